#include "numerics/elementary.h"

#include <cmath>
#include <limits>

namespace kestran {
namespace elementary {

// Worked in 300-bit arithmetic for j = 0 ... 127.
alignas(16) const PowerOfTwo powers_of_two[128] = {
    {0x1p+0, 0x0p+0},
    {0x1.0163da9fb3335p+0, 0x1.b3b4f1a88bf6ep-54},
    {0x1.02c9a3e778061p+0, -0x1.160139cd8dc5dp-56},
    {0x1.04315e86e7f85p+0, -0x1.05e7a108766d1p-54},
    {0x1.059b0d3158574p+0, 0x1.cd2523567f613p-55},
    {0x1.0706b29ddf6dep+0, -0x1.bce8023f98efap-55},
    {0x1.0874518759bc8p+0, 0x1.0f74e61e6c861p-57},
    {0x1.09e3ecac6f383p+0, 0x1.0a3e45b33d399p-54},
    {0x1.0b5586cf9890fp+0, 0x1.79aa65d837b6dp-54},
    {0x1.0cc922b7247f7p+0, 0x1.eb51a92fdeffcp-55},
    {0x1.0e3ec32d3d1a2p+0, 0x1.ebe3d702f9cd1p-60},
    {0x1.0fb66affed31bp+0, -0x1.a033489906e0bp-57},
    {0x1.11301d0125b51p+0, -0x1.556522a2fbd0ep-54},
    {0x1.12abdc06c31ccp+0, -0x1.080ef8c4eea55p-58},
    {0x1.1429aaea92dep+0, -0x1.1c923b9d5f416p-54},
    {0x1.15a98c8a58e51p+0, 0x1.0d3e3e95c55afp-55},
    {0x1.172b83c7d517bp+0, -0x1.01b15eaa59348p-55},
    {0x1.18af9388c8deap+0, -0x1.f1ff055de323dp-55},
    {0x1.1a35beb6fcb75p+0, 0x1.b898c3f1353bfp-55},
    {0x1.1bbe084045cd4p+0, -0x1.6d99c7611eb26p-54},
    {0x1.1d4873168b9aap+0, 0x1.aecf73e3a2f6p-54},
    {0x1.1ed5022fcd91dp+0, -0x1.fe782cb86389dp-55},
    {0x1.2063b88628cd6p+0, 0x1.a6f4144a6c38dp-55},
    {0x1.21f49917ddc96p+0, 0x1.07a05b0e4047dp-55},
    {0x1.2387a6e756238p+0, 0x1.68efde3a8a894p-54},
    {0x1.251ce4fb2a63fp+0, 0x1.75e18f274487dp-55},
    {0x1.26b4565e27cddp+0, 0x1.0472b981fe7f2p-55},
    {0x1.284dfe1f56381p+0, -0x1.6b87b3f71085ep-54},
    {0x1.29e9df51fdee1p+0, 0x1.2f7e16d09ab31p-55},
    {0x1.2b87fd0dad99p+0, -0x1.d219b1a6fbffap-60},
    {0x1.2d285a6e4030bp+0, 0x1.b3782720c0ab4p-55},
    {0x1.2ecafa93e2f56p+0, 0x1.e149289cecb8fp-57},
    {0x1.306fe0a31b715p+0, 0x1.34d754db0abb6p-55},
    {0x1.32170fc4cd831p+0, 0x1.64201e2ac744cp-55},
    {0x1.33c08b26416ffp+0, 0x1.fdd395dd3f84ap-55},
    {0x1.356c55f929ff1p+0, -0x1.6a3803b8e5b04p-55},
    {0x1.371a7373aa9cbp+0, -0x1.24aedcc4b5068p-54},
    {0x1.38cae6d05d866p+0, -0x1.907f81b512d8ep-54},
    {0x1.3a7db34e59ff7p+0, -0x1.1d1e83e9436d2p-56},
    {0x1.3c32dc313a8e5p+0, -0x1.91919b3ce1b15p-54},
    {0x1.3dea64c123422p+0, 0x1.59f48a72a4c6dp-55},
    {0x1.3fa4504ac801cp+0, -0x1.312607a28698ap-54},
    {0x1.4160a21f72e2ap+0, -0x1.8a78f4817895bp-58},
    {0x1.431f5d950a897p+0, -0x1.c2c9b67499a1bp-56},
    {0x1.44e086061892dp+0, 0x1.363ed60c2ac11p-59},
    {0x1.46a41ed1d0057p+0, 0x1.666093b0664efp-54},
    {0x1.486a2b5c13cdp+0, 0x1.ecce1daa10379p-57},
    {0x1.4a32af0d7d3dep+0, 0x1.3ff8e3f0f123p-54},
    {0x1.4bfdad5362a27p+0, 0x1.690cebb7aafbp-56},
    {0x1.4dcb299fddd0dp+0, 0x1.31dbdeb54e077p-54},
    {0x1.4f9b2769d2ca7p+0, -0x1.f94340071a38ep-55},
    {0x1.516daa2cf6642p+0, -0x1.7deccdc93a349p-55},
    {0x1.5342b569d4f82p+0, -0x1.8dec6bd0f385fp-56},
    {0x1.551a4ca5d920fp+0, -0x1.61246ec7b5cf6p-55},
    {0x1.56f4736b527dap+0, 0x1.3350518fdd78ep-54},
    {0x1.58d12d497c7fdp+0, 0x1.b98b72f8a9b05p-56},
    {0x1.5ab07dd485429p+0, 0x1.063e1e21c5409p-54},
    {0x1.5c9268a5946b7p+0, 0x1.4c7855019c6eap-60},
    {0x1.5e76f15ad2148p+0, 0x1.432e62b64c035p-54},
    {0x1.605e1b976dc09p+0, -0x1.ce44a6199769fp-55},
    {0x1.6247eb03a5585p+0, -0x1.c33c53bef4da8p-55},
    {0x1.6434634ccc32p+0, -0x1.45378892be9aep-55},
    {0x1.6623882552225p+0, -0x1.3cedd78565858p-54},
    {0x1.68155d44ca973p+0, 0x1.710aa807e1964p-58},
    {0x1.6a09e667f3bcdp+0, -0x1.3b3efbf5e2228p-54},
    {0x1.6c012750bdabfp+0, -0x1.a12ad8734b982p-57},
    {0x1.6dfb23c651a2fp+0, -0x1.367efb86da9eep-57},
    {0x1.6ff7df9519484p+0, -0x1.0dc3d54e08851p-55},
    {0x1.71f75e8ec5f74p+0, -0x1.81f647e5a3ecfp-56},
    {0x1.73f9a48a58174p+0, -0x1.6ee4ac08b7dbp-55},
    {0x1.75feb564267c9p+0, -0x1.619321e55e68ap-55},
    {0x1.780694fde5d3fp+0, 0x1.09ccb5e09d4d3p-54},
    {0x1.7a11473eb0187p+0, -0x1.b32dcb94da51dp-56},
    {0x1.7c1ed0130c132p+0, 0x1.4ecfd5467c06bp-54},
    {0x1.7e2f336cf4e62p+0, 0x1.5ebe1abd66c55p-57},
    {0x1.80427543e1a12p+0, -0x1.8a1c52fb3cf42p-55},
    {0x1.82589994cce13p+0, -0x1.369b6f13b3734p-54},
    {0x1.8471a4623c7adp+0, -0x1.05e843a19ff1ep-55},
    {0x1.868d99b4492edp+0, -0x1.4d450d872576ep-54},
    {0x1.88ac7d98a6699p+0, 0x1.0ad675b0e8ap-54},
    {0x1.8ace5422aa0dbp+0, 0x1.db72fc1f0eab4p-55},
    {0x1.8cf3216b5448cp+0, -0x1.5b6609cc5e7ffp-57},
    {0x1.8f1ae99157736p+0, 0x1.bf68359f35f44p-56},
    {0x1.9145b0b91ffc6p+0, -0x1.3091fa71e3d83p-54},
    {0x1.93737b0cdc5e5p+0, -0x1.da9b88b6c1e29p-58},
    {0x1.95a44cbc8520fp+0, -0x1.c23f97c90b959p-57},
    {0x1.97d829fde4e5p+0, -0x1.2434322f4f9aap-54},
    {0x1.9a0f170ca07bap+0, -0x1.5ca6cd7668e4bp-55},
    {0x1.9c49182a3f09p+0, 0x1.1affc2b91ce27p-56},
    {0x1.9e86319e32323p+0, 0x1.dd235e10a73bbp-57},
    {0x1.a0c667b5de565p+0, -0x1.7c50422622263p-55},
    {0x1.a309bec4a2d33p+0, 0x1.b1c86e3e231d5p-55},
    {0x1.a5503b23e255dp+0, -0x1.1bbd1d3bcbb15p-54},
    {0x1.a799e1330b358p+0, 0x1.0cc319cee31d2p-54},
    {0x1.a9e6b5579fdbfp+0, 0x1.469846e735ab3p-55},
    {0x1.ac36bbfd3f37ap+0, -0x1.2dfcd978e9db4p-55},
    {0x1.ae89f995ad3adp+0, 0x1.c1a7792cb3387p-55},
    {0x1.b0e07298db666p+0, -0x1.07b8f4ad1d9fap-54},
    {0x1.b33a2b84f15fbp+0, -0x1.5c3d956dcaebap-58},
    {0x1.b59728de5593ap+0, -0x1.0a40e3da6f64p-54},
    {0x1.b7f76f2fb5e47p+0, -0x1.8d6f438ad9334p-57},
    {0x1.ba5b030a1064ap+0, -0x1.1eee26b588a35p-54},
    {0x1.bcc1e904bc1d2p+0, 0x1.4ffd70a5fddcdp-56},
    {0x1.bf2c25bd71e09p+0, -0x1.1bdfbfa9298acp-54},
    {0x1.c199bdd85529cp+0, 0x1.36eae30af0cb3p-56},
    {0x1.c40ab5fffd07ap+0, 0x1.ee3325c9ffd94p-55},
    {0x1.c67f12e57d14bp+0, 0x1.4e08fd10959acp-55},
    {0x1.c8f6d9406e7b5p+0, 0x1.3cdaf384e1a67p-57},
    {0x1.cb720dcef9069p+0, 0x1.76b2c6c921968p-57},
    {0x1.cdf0b555dc3fap+0, -0x1.08a1883ccb5d2p-55},
    {0x1.d072d4a07897cp+0, -0x1.fad5d3ffffa6fp-55},
    {0x1.d2f87080d89f2p+0, -0x1.00dae3875a949p-54},
    {0x1.d5818dcfba487p+0, 0x1.4a385a63d07a7p-56},
    {0x1.d80e316c98398p+0, -0x1.2919e2040220fp-55},
    {0x1.da9e603db3285p+0, 0x1.e5a50d5c192acp-55},
    {0x1.dd321f301b46p+0, 0x1.43a59ac016b4bp-55},
    {0x1.dfc97337b9b5fp+0, -0x1.2d52107b43e1fp-55},
    {0x1.e264614f5a129p+0, -0x1.92ab93b470dc9p-55},
    {0x1.e502ee78b3ff6p+0, 0x1.4b604603a88d3p-56},
    {0x1.e7a51fbc74c83p+0, 0x1.3c5ec519d7271p-55},
    {0x1.ea4afa2a490dap+0, -0x1.ff7128fd391fp-55},
    {0x1.ecf482d8e67f1p+0, -0x1.dae98e223747dp-55},
    {0x1.efa1bee615a27p+0, 0x1.ec3bc41aa2008p-55},
    {0x1.f252b376bba97p+0, 0x1.42b94c3a9eb32p-55},
    {0x1.f50765b6e454p+0, 0x1.a64a931d185eep-55},
    {0x1.f7bfdad9cbe14p+0, -0x1.e37bae43be3edp-55},
    {0x1.fa7c1819e90d8p+0, 0x1.7893b4d91cd9dp-56},
    {0x1.fd3c22b8f71f1p+0, 0x1.305c14160cc89p-58},
};

// Middles 182/256, 183/256 ... 255/256, then 128/128, 129/128 ... 181/128; the logarithms were worked in
// 300-bit arithmetic. The interval about 1 has reciprocal 1 and logarithm 0, so nothing cancels there.
const LogCentre log_centres[128] = {
    {0x1.6818p+0, -0x1.5d601df354p-2, 0x1.6d8573fcee5e7p-47},
    {0x1.662p+0, -0x1.57c2f53b05p-2, -0x1.0494c017c2a52p-45},
    {0x1.642cp+0, -0x1.5229607342p-2, -0x1.eb5707edcc697p-45},
    {0x1.624p+0, -0x1.4c9f09e153p-2, 0x1.e1dde70e02dep-45},
    {0x1.6058p+0, -0x1.47189c271ap-2, -0x1.06c13a5f67f7p-44},
    {0x1.5e74p+0, -0x1.4196323a2ap-2, -0x1.a6f87795ba59p-44},
    {0x1.5c98p+0, -0x1.3c23a772ebp-2, -0x1.82954b0f6bbd8p-46},
    {0x1.5acp+0, -0x1.36b5776bc1p-2, -0x1.169785a9c223fp-46},
    {0x1.58ecp+0, -0x1.314bbe1bc9p-2, -0x1.35b8075ff87bfp-44},
    {0x1.572p+0, -0x1.2bf287cc41p-2, -0x1.b0f4f549d8ecfp-45},
    {0x1.5554p+0, -0x1.269221114ep-2, 0x1.20b74a5a7aeaep-44},
    {0x1.539p+0, -0x1.214296d08ap-2, 0x1.cb6298064becap-44},
    {0x1.51dp+0, -0x1.1bf816355fp-2, 0x1.1b10958a02186p-44},
    {0x1.5014p+0, -0x1.16b2bcb9a4p-2, 0x1.a58e52f8087cdp-44},
    {0x1.4e6p+0, -0x1.117ee81dfep-2, -0x1.30f778a2e8cbdp-44},
    {0x1.4cacp+0, -0x1.0c444675d4p-2, -0x1.c81dba5bec16cp-47},
    {0x1.4afcp+0, -0x1.070f260271p-2, -0x1.1a260081eb6f2p-48},
    {0x1.4954p+0, -0x1.01ec15623fp-2, -0x1.246188fb496e1p-44},
    {0x1.47bp+0, -0x1.f99dc6c23cp-3, 0x1.7ed06117b4369p-44},
    {0x1.460cp+0, -0x1.ef563e4c7ap-3, 0x1.0897e8e8e18p-45},
    {0x1.447p+0, -0x1.e533effde2p-3, 0x1.fd75bb2837bb6p-44},
    {0x1.42d8p+0, -0x1.db1e1b06b8p-3, 0x1.99835a55aabfbp-45},
    {0x1.414p+0, -0x1.d0fb7f2256p-3, 0x1.af52b20633b29p-47},
    {0x1.3fbp+0, -0x1.c6ff3c6efcp-3, -0x1.ee1337e5107eep-44},
    {0x1.3e24p+0, -0x1.bd10337ffcp-3, -0x1.1a7b245a2c8ffp-44},
    {0x1.3c98p+0, -0x1.b314c570f4p-3, 0x1.fb2cad6142d7ap-47},
    {0x1.3b14p+0, -0x1.a940d3c86ep-3, 0x1.86f98a62b76a5p-45},
    {0x1.399p+0, -0x1.9f60c06846p-3, 0x1.4355507c16436p-44},
    {0x1.3814p+0, -0x1.95a8edcec8p-3, 0x1.cfc024bff78d6p-44},
    {0x1.3698p+0, -0x1.8be53eb17ep-3, -0x1.cf8a60438f73ep-44},
    {0x1.352p+0, -0x1.8230164c1ap-3, -0x1.98dd68a5d0b48p-46},
    {0x1.33bp+0, -0x1.78a4584cp-3, -0x1.9e3f57d3f542ep-44},
    {0x1.324p+0, -0x1.6f0d28ae56p-3, -0x1.69737c93373dap-44},
    {0x1.30dp+0, -0x1.656a6be1dep-3, 0x1.a4d0df2ddfbcep-44},
    {0x1.2f68p+0, -0x1.5bf206b504p-3, 0x1.2757941bdeda4p-46},
    {0x1.2e04p+0, -0x1.52897e426p-3, 0x1.c009111f7446ep-44},
    {0x1.2cap+0, -0x1.4915d832fcp-3, 0x1.53cee006bcf62p-44},
    {0x1.2b4p+0, -0x1.3fb25a5952p-3, -0x1.195be6b358ff7p-44},
    {0x1.29e4p+0, -0x1.365f4b0156p-3, 0x1.fd3a6050efe7p-44},
    {0x1.288cp+0, -0x1.2d1cf0c574p-3, 0x1.558a7d08a115cp-46},
    {0x1.2734p+0, -0x1.23cfd2a154p-3, 0x1.c3c3a9c8bc0cbp-44},
    {0x1.25e4p+0, -0x1.1aaf97d7e4p-3, 0x1.84885f5e52d8ap-44},
    {0x1.2494p+0, -0x1.1184e8197ep-3, -0x1.42f7646301188p-45},
    {0x1.2344p+0, -0x1.084fab53ccp-3, 0x1.4936de1efe066p-44},
    {0x1.21fcp+0, -0x1.fe90939bfcp-4, 0x1.5234255cf10abp-45},
    {0x1.20b4p+0, -0x1.ec6d582f68p-4, -0x1.2356b22741e07p-45},
    {0x1.1f7p+0, -0x1.da6e7637c4p-4, -0x1.a83eac951c1aap-46},
    {0x1.1e3p+0, -0x1.c8948014bcp-4, -0x1.6d371637a76fbp-45},
    {0x1.1cfp+0, -0x1.b6a688d9b4p-4, -0x1.b175ff3be2566p-44},
    {0x1.1bb4p+0, -0x1.a4de24087p-4, 0x1.7b1a7e7482bbap-45},
    {0x1.1a7cp+0, -0x1.933be5d474p-4, -0x1.31a5c3835489cp-45},
    {0x1.1944p+0, -0x1.818622ea34p-4, -0x1.b7b995392e6ccp-44},
    {0x1.181p+0, -0x1.6ff7309f8cp-4, -0x1.8f19994f375abp-55},
    {0x1.16ep+0, -0x1.5e8fa4d858p-4, -0x1.1c6fce08d711p-44},
    {0x1.15bp+0, -0x1.4d1515b988p-4, 0x1.8e7d02e3f5e95p-47},
    {0x1.1484p+0, -0x1.3bc29a634cp-4, 0x1.b8ae6dd9cd147p-44},
    {0x1.135cp+0, -0x1.2a98ca42bp-4, 0x1.0c87cb4ca73cep-45},
    {0x1.1234p+0, -0x1.195c7d038p-4, -0x1.8c1f4ef37e16cp-45},
    {0x1.111p+0, -0x1.08498b51e4p-4, 0x1.93b33c55fb24fp-46},
    {0x1.0ffp+0, -0x1.eec11bf258p-5, -0x1.c84280496bda5p-44},
    {0x1.0edp+0, -0x1.cccb3cd798p-5, -0x1.97a98b99b5035p-44},
    {0x1.0db4p+0, -0x1.ab2aacd86p-5, -0x1.514c04298730ep-47},
    {0x1.0c98p+0, -0x1.8966a13db8p-5, -0x1.9dac511103b4ep-44},
    {0x1.0b8p+0, -0x1.67f94f0948p-5, -0x1.ecc1f3e7e4ed7p-44},
    {0x1.0a68p+0, -0x1.4668ed42dp-5, 0x1.c167e206927d3p-45},
    {0x1.0954p+0, -0x1.2530b2f8c8p-5, -0x1.07d3ec0431bf5p-46},
    {0x1.0844p+0, -0x1.0451d86638p-5, 0x1.bab4b0b612297p-44},
    {0x1.0734p+0, -0x1.c6a22e71ap-6, 0x1.bf43c027982f6p-44},
    {0x1.0624p+0, -0x1.845c5275cp-6, -0x1.27c60c6632001p-44},
    {0x1.0518p+0, -0x1.42cc92148p-6, 0x1.dde394cdaf04bp-44},
    {0x1.041p+0, -0x1.01f565873p-6, -0x1.6107d26f92eb5p-44},
    {0x1.0308p+0, -0x1.81b889ecp-7, 0x1.834c73c4ec934p-45},
    {0x1.0204p+0, -0x1.00fd57588p-7, 0x1.0c76e4447e693p-46},
    {0x1.01p+0, -0x1.ff00aa2bp-9, -0x1.0bc04a086b56ap-45},
    {0x1p+0, 0x0p+0, 0x0p+0},
    {0x1.fc08p-1, 0x1.fdfaa6b14p-8, -0x1.98770e7341672p-44},
    {0x1.f82p-1, 0x1.fbea8b13cp-7, 0x1.ec927b17e4e13p-50},
    {0x1.f448p-1, 0x1.7b5bb0942p-6, 0x1.826d0d4da026fp-45},
    {0x1.f08p-1, 0x1.f7a9b1678p-6, 0x1.42ad9271be7d7p-45},
    {0x1.eccp-1, 0x1.39f07ba0e8p-5, 0x1.eb129d642e577p-44},
    {0x1.e91p-1, 0x1.77798f8d7p-5, -0x1.013b07c95c036p-44},
    {0x1.e57p-1, 0x1.b46bd74da8p-5, -0x1.2cfd778ea4332p-46},
    {0x1.e1ep-1, 0x1.f0c30c1118p-5, -0x1.caef3588b7d8p-45},
    {0x1.de6p-1, 0x1.163d6ef958p-4, -0x1.7f3b038d8e6ebp-46},
    {0x1.dae8p-1, 0x1.340c796ac4p-4, 0x1.16a384068c612p-44},
    {0x1.d778p-1, 0x1.51cdf40b94p-4, -0x1.6a6f27e08ed5bp-46},
    {0x1.d42p-1, 0x1.6ef528c058p-4, -0x1.5d462d767cadep-44},
    {0x1.d0c8p-1, 0x1.8c51dd7e4cp-4, -0x1.64180d2e3cad7p-47},
    {0x1.cd88p-1, 0x1.a90fd3b534p-4, 0x1.465eb726e85adp-44},
    {0x1.ca48p-1, 0x1.c601c90f2p-4, -0x1.6daa1a59af65dp-44},
    {0x1.c72p-1, 0x1.e2507702bp-4, -0x1.f897980522249p-45},
    {0x1.c3f8p-1, 0x1.fed1932p-4, 0x1.58eeb117feaf2p-45},
    {0x1.c0ep-1, 0x1.0d79e7cd48p-3, 0x1.cb422847849e4p-44},
    {0x1.bddp-1, 0x1.1b7f2d5cbap-3, 0x1.085d8ded843f9p-44},
    {0x1.badp-1, 0x1.29532f824p-3, -0x1.5babd495c735ep-44},
    {0x1.b7d8p-1, 0x1.371a0203fap-3, -0x1.3737a913506b2p-48},
    {0x1.b4e8p-1, 0x1.44d336ccbcp-3, -0x1.70cac0bdf22e7p-46},
    {0x1.b2p-1, 0x1.527e5e4a1cp-3, -0x1.4e60b8d4b411dp-44},
    {0x1.af28p-1, 0x1.5ff5070abap-3, -0x1.85719c2a6969p-44},
    {0x1.ac58p-1, 0x1.6d5c3e7306p-3, 0x1.09cf818d9389ep-46},
    {0x1.a99p-1, 0x1.7ab390229ep-3, -0x1.c053b0975fec7p-45},
    {0x1.a6dp-1, 0x1.87fa86521p-3, 0x1.2212595679851p-44},
    {0x1.a418p-1, 0x1.9530a9d6d6p-3, -0x1.1b93d4384c494p-44},
    {0x1.a17p-1, 0x1.a22e42099p-3, -0x1.6d3db8ae31ba8p-44},
    {0x1.9ec8p-1, 0x1.af4114e95p-3, -0x1.63cb9af155c9p-53},
    {0x1.9c3p-1, 0x1.bc19e74ffcp-3, 0x1.7b03bfba2bdf2p-44},
    {0x1.9998p-1, 0x1.c9077c7daap-3, -0x1.6cea43df47323p-45},
    {0x1.971p-1, 0x1.d5b996b98p-3, -0x1.287466dffc818p-45},
    {0x1.9488p-1, 0x1.e27ff6f1b4p-3, -0x1.7c7834fb4f4f5p-44},
    {0x1.921p-1, 0x1.ef095cbdeap-3, -0x1.b27d79c5e2f2ap-45},
    {0x1.8fap-1, 0x1.fb7d86eee4p-3, -0x1.1c061cdb8097bp-45},
    {0x1.8d3p-1, 0x1.0402994b4fp-2, 0x1.0370df44d82d4p-48},
    {0x1.8ac8p-1, 0x1.0a3b8e31ebp-2, 0x1.eb3292df53fp-46},
    {0x1.887p-1, 0x1.10547f9d27p-2, -0x1.511f7da9802ccp-44},
    {0x1.8618p-1, 0x1.1676cabadap-2, 0x1.83963c8b4ab26p-44},
    {0x1.83c8p-1, 0x1.1c8d6c187ap-2, 0x1.07307fa855eb6p-45},
    {0x1.818p-1, 0x1.22981fbef8p-2, -0x1.a1421609580dap-44},
    {0x1.7f4p-1, 0x1.2896a13e08p-2, 0x1.a8ed027e16952p-44},
    {0x1.7d08p-1, 0x1.2e88abb1dap-2, -0x1.836c77adbcdc9p-45},
    {0x1.7adp-1, 0x1.348399adaap-2, -0x1.35e565cdd36adp-45},
    {0x1.78a8p-1, 0x1.3a5c056026p-2, 0x1.429e7cb96c6acp-44},
    {0x1.768p-1, 0x1.403d086ceap-2, 0x1.e6ef574487308p-44},
    {0x1.746p-1, 0x1.4610bc29c6p-2, -0x1.e82c9f310c8e6p-46},
    {0x1.724p-1, 0x1.4becf95d98p-2, -0x1.bb33b20023a7p-44},
    {0x1.703p-1, 0x1.51a55876a7p-2, 0x1.fd652b4633246p-44},
    {0x1.6e2p-1, 0x1.5765f1749ep-2, -0x1.6532d93e0d82bp-44},
    {0x1.6c18p-1, 0x1.5d185bf709p-2, -0x1.90fe84eee8725p-44},
    {0x1.6a1p-1, 0x1.62d2ef3a0fp-2, -0x1.b32cfe265d5aep-44},
};

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// e^(x + correction), |correction| < 2^-14, where the result may leave the normal range: it is worked 2^64
// times nearer to 1 and scaled last, so that it overflows or is rounded to a subnormal once.
double exponential_near_range_ends(double x, double correction) {
  if (x > 710.0) return infinity;
  if (x < -746.0) return 0.0;
  ReducedArgument<OneValue> argument = reduced<OneValue>(x);
  argument.remainder += correction;
  argument.shifted += x > 0.0 ? -64.0 * 128.0 : 64.0 * 128.0;
  return recombined(argument) * (x > 0.0 ? 0x1p+64 : 0x1p-64);
}

// leading + trailing = ln x for positive x, with an error near 2^-65 of it.
struct LongLog {
  double leading, trailing;
};

// The series of ln(1 + f) to f^9 (the first term left out is below 2^-73 of f), its first two terms summed
// without rounding (Dekker, 1971).
LongLog long_log(double x) {
  const LogParts<OneValue> parts = log_parts(x < smallest_normal ? scaled_subnormal(x) : scaled(x));
  const double f = parts.f;
  const double f_rest = (parts.f_leading - f) + parts.f_trailing;

  const double f_half = leading_half(f);
  const double half_square = f_half * f_half * 0.5;
  const double half_square_rest = (f - f_half) * (f + f_half) * 0.5;

  const double sum = parts.leading + parts.f_trailing;
  const double sum_rest = (parts.leading - sum) + parts.f_trailing;
  const double head = sum - half_square;
  const double head_rest = (sum - head) - half_square;

  const double f2 = f * f;
  const double low_terms = (1.0 / 3 - f * (1.0 / 4)) + f2 * (1.0 / 5 - f * (1.0 / 6));
  const double high_terms = (1.0 / 7 - f * (1.0 / 8)) + f2 * (1.0 / 9);
  const double series = f * f2 * (low_terms + (f2 * f2) * high_terms);

  const double tail = (sum_rest + head_rest) + (parts.trailing - (f * f_rest + half_square_rest)) + series;
  const double leading = head + tail;
  return {leading, (head - leading) + tail};
}

// Positive finite base other than 1.
double power_of_positive(double base, double exponent) {
  // Even the bases next to 1 overflow or vanish from here on.
  if (std::fabs(exponent) >= 0x1p+64) return (base > 1.0) == (exponent > 0.0) ? infinity : 0.0;
  const LongLog log_base = long_log(base);
  const double exponent_half = leading_half(exponent);
  const double log_half = leading_half(log_base.leading);
  const double product = exponent_half * log_half;
  const double product_rest =
      (exponent - exponent_half) * log_half + exponent * ((log_base.leading - log_half) + log_base.trailing);
  if (std::fabs(product) > exponential_safe_limit) return exponential_near_range_ends(product, product_rest);
  ReducedArgument<OneValue> argument = reduced<OneValue>(product);
  argument.remainder += product_rest;
  return recombined(argument);
}

bool is_whole(double x) { return std::floor(x) == x; }
bool is_odd(double x) { return is_whole(x) && !is_whole(0.5 * x); }

// Zero, infinite or negative base, or an infinite exponent; neither is NaN.
double power_of_unusual(double base, double exponent) {
  const double size = std::fabs(base);
  if (std::isinf(exponent)) {
    if (size == 1.0) return 1.0;
    return (size > 1.0) == (exponent > 0.0) ? infinity : 0.0;
  }
  const bool endless = size == 0.0 || size > largest_finite;
  if (base < 0.0 && !endless && !is_whole(exponent)) return not_a_number;
  double result = 1.0;
  if (endless) {
    result = (size > 1.0) == (exponent > 0.0) ? infinity : 0.0;
  } else if (size != 1.0) {
    result = power_of_positive(size, exponent);
  }
  return std::signbit(base) && is_odd(exponent) ? -result : result;
}

}  // namespace

double exponential_of_any(double x) {
  if (std::fabs(x) <= exponential_safe_limit) return exponential_in_range<OneValue>(x);
  return std::isnan(x) ? not_a_number : exponential_near_range_ends(x, 0.0);
}

__m128d exponential_of_any(__m128d x) {
  return _mm_set_pd(exponential_of_any(_mm_cvtsd_f64(_mm_unpackhi_pd(x, x))),
                    exponential_of_any(_mm_cvtsd_f64(x)));
}

double log_of_any(double x) {
  if (std::isnan(x) || x < 0.0) return not_a_number;
  if (x == 0.0) return -infinity;
  if (x > largest_finite) return infinity;
  return log_of_scaled(x < smallest_normal ? scaled_subnormal(x) : scaled(x));
}

__m128d log_of_any(__m128d x) {
  return _mm_set_pd(log_of_any(_mm_cvtsd_f64(_mm_unpackhi_pd(x, x))), log_of_any(_mm_cvtsd_f64(x)));
}

}  // namespace elementary

double power(double base, double exponent) {
  using namespace elementary;
  if (exponent == 0.0 || base == 1.0) return 1.0;
  if (std::isnan(base) || std::isnan(exponent)) return not_a_number;
  if (base > 0.0 && base <= largest_finite) return power_of_positive(base, exponent);
  return power_of_unusual(base, exponent);
}

}  // namespace kestran
