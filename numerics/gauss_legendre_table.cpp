#include "numerics/gauss_legendre_table.h"

namespace kestran {

const QuadratureNode gauss_legendre_18[18] = {
    {-0x1.fbae6e0470f67p-1, 0x1.622821caa2076p-6}, {-0x1.e961c1b84910dp-1, 0x1.9742f734750c9p-5},
    {-0x1.c90330c3df333p-1, 0x1.390a2fc0485c6p-4}, {-0x1.9b7f3764d70b6p-1, 0x1.9d7567a3a5731p-4},
    {-0x1.6224cdda05b6ep-1, 0x1.f5fc72cc7c308p-4}, {-0x1.1e9a48496f47ep-1, 0x1.2009647765816p-3},
    {-0x1.a5a218b24aaccp-2, 0x1.3ccb51a6e0a73p-3}, {-0x1.01ee7676a1ae3p-2, 0x1.507030698595dp-3},
    {-0x1.5b3d0b4884001p-4, 0x1.5a6752598dbdap-3}, {0x1.5b3d0b4884001p-4, 0x1.5a6752598dbdap-3},
    {0x1.01ee7676a1ae3p-2, 0x1.507030698595dp-3},  {0x1.a5a218b24aaccp-2, 0x1.3ccb51a6e0a73p-3},
    {0x1.1e9a48496f47ep-1, 0x1.2009647765816p-3},  {0x1.6224cdda05b6ep-1, 0x1.f5fc72cc7c308p-4},
    {0x1.9b7f3764d70b6p-1, 0x1.9d7567a3a5731p-4},  {0x1.c90330c3df333p-1, 0x1.390a2fc0485c6p-4},
    {0x1.e961c1b84910dp-1, 0x1.9742f734750c9p-5},  {0x1.fbae6e0470f67p-1, 0x1.622821caa2076p-6},
};

const QuadratureNode gauss_legendre_19[19] = {
    {-0x1.fc1cbff545011p-1, 0x1.3edca7fdf97ebp-6}, {-0x1.eba067258b1aap-1, 0x1.6f1e3ecb55ab4p-5},
    {-0x1.ce6a735a6e10bp-1, 0x1.1ace735068375p-4}, {-0x1.a53adaff88a74p-1, 0x1.76be3dac75c87p-4},
    {-0x1.71227a925a98cp-1, 0x1.c8fa1b5f341d9p-4}, {-0x1.337aac969398fp-1, 0x1.07b02852b1e2bp-3},
    {-0x1.dbb86eb38d8b3p-2, 0x1.240efb90355b0p-3}, {-0x1.44296121b9d1fp-2, 0x1.38dd6714e5d79p-3},
    {-0x1.486a1d153eb63p-3, 0x1.459174fbae09cp-3}, {0.0, 0x1.49d6ea57ce6f4p-3},
    {0x1.486a1d153eb63p-3, 0x1.459174fbae09cp-3},  {0x1.44296121b9d1fp-2, 0x1.38dd6714e5d79p-3},
    {0x1.dbb86eb38d8b3p-2, 0x1.240efb90355b0p-3},  {0x1.337aac969398fp-1, 0x1.07b02852b1e2bp-3},
    {0x1.71227a925a98cp-1, 0x1.c8fa1b5f341d9p-4},  {0x1.a53adaff88a74p-1, 0x1.76be3dac75c87p-4},
    {0x1.ce6a735a6e10bp-1, 0x1.1ace735068375p-4},  {0x1.eba067258b1aap-1, 0x1.6f1e3ecb55ab4p-5},
    {0x1.fc1cbff545011p-1, 0x1.3edca7fdf97ebp-6},
};

const QuadratureNode gauss_legendre_24[24] = {
    {-0x1.fd892de691982p-1, 0x1.9465bd3112202p-7}, {-0x1.f30f9f0cbf876p-1, 0x1.d375514486f1dp-6},
    {-0x1.e06585a70aa4dp-1, 0x1.6ab884f57c979p-5}, {-0x1.c5d841864d0f5p-1, 0x1.e5c6255d25edap-5},
    {-0x1.a3d74ce0d3700p-1, 0x1.2c6d5c2eff064p-4}, {-0x1.7af18edb9ddd6p-1, 0x1.6108ef504463ap-4},
    {-0x1.4bd2ee5fa1086p-1, 0x1.8fd8936444b16p-4}, {-0x1.17417bac4d72bp-1, 0x1.b8177ba4a68dcp-4},
    {-0x1.bc345d81e24b5p-2, 0x1.d91c78acb1b2dp-4}, {-0x1.429a8c588e910p-2, 0x1.f25cbce1d1ff6p-4},
    {-0x1.8769542b94f8dp-3, 0x1.01b7117cf8bd8p-3}, {-0x1.0660853eda2e8p-4, 0x1.060475e763736p-3},
    {0x1.0660853eda2e8p-4, 0x1.060475e763736p-3},  {0x1.8769542b94f8dp-3, 0x1.01b7117cf8bd8p-3},
    {0x1.429a8c588e910p-2, 0x1.f25cbce1d1ff6p-4},  {0x1.bc345d81e24b5p-2, 0x1.d91c78acb1b2dp-4},
    {0x1.17417bac4d72bp-1, 0x1.b8177ba4a68dcp-4},  {0x1.4bd2ee5fa1086p-1, 0x1.8fd8936444b16p-4},
    {0x1.7af18edb9ddd6p-1, 0x1.6108ef504463ap-4},  {0x1.a3d74ce0d3700p-1, 0x1.2c6d5c2eff064p-4},
    {0x1.c5d841864d0f5p-1, 0x1.e5c6255d25edap-5},  {0x1.e06585a70aa4dp-1, 0x1.6ab884f57c979p-5},
    {0x1.f30f9f0cbf876p-1, 0x1.d375514486f1dp-6},  {0x1.fd892de691982p-1, 0x1.9465bd3112202p-7},
};

const QuadratureNode gauss_legendre_27[27] = {
    {-0x1.fe0b35561f891p-1, 0x1.4117efc976f1fp-7}, {-0x1.f5b887a3acb14p-1, 0x1.73b0f3b19adf5p-6},
    {-0x1.e6dc701b1fe7dp-1, 0x1.21274971108f9p-5}, {-0x1.d1a7aaaf33346p-1, 0x1.84b4a15fb1cdep-5},
    {-0x1.b660e20707c1ep-1, 0x1.e331713a17b90p-5}, {-0x1.9563179f6a927p-1, 0x1.1db0f1502afa1p-4},
    {-0x1.6f1c63d9011dbp-1, 0x1.460fc0fb00c49p-4}, {-0x1.440c8381c6988p-1, 0x1.6a2e66e278aa1p-4},
    {-0x1.14c32cb7573e9p-1, 0x1.8994555918b59p-4}, {-0x1.c3bc5e07d0d5bp-2, 0x1.a3d8c1e36b218p-4},
    {-0x1.580ec92f218ecp-2, 0x1.b8a402338b3adp-4}, {-0x1.cfc9ed837c5c9p-3, 0x1.c7b0b07175d87p-4},
    {-0x1.d2d4eafd55fb2p-4, 0x1.d0cc92b68574ep-4}, {0.0, 0x1.d3d9429e9d2d9p-4},
    {0x1.d2d4eafd55fb2p-4, 0x1.d0cc92b68574ep-4},  {0x1.cfc9ed837c5c9p-3, 0x1.c7b0b07175d87p-4},
    {0x1.580ec92f218ecp-2, 0x1.b8a402338b3adp-4},  {0x1.c3bc5e07d0d5bp-2, 0x1.a3d8c1e36b218p-4},
    {0x1.14c32cb7573e9p-1, 0x1.8994555918b59p-4},  {0x1.440c8381c6988p-1, 0x1.6a2e66e278aa1p-4},
    {0x1.6f1c63d9011dbp-1, 0x1.460fc0fb00c49p-4},  {0x1.9563179f6a927p-1, 0x1.1db0f1502afa1p-4},
    {0x1.b660e20707c1ep-1, 0x1.e331713a17b90p-5},  {0x1.d1a7aaaf33346p-1, 0x1.84b4a15fb1cdep-5},
    {0x1.e6dc701b1fe7dp-1, 0x1.21274971108f9p-5},  {0x1.f5b887a3acb14p-1, 0x1.73b0f3b19adf5p-6},
    {0x1.fe0b35561f891p-1, 0x1.4117efc976f1fp-7},
};

const QuadratureNode gauss_legendre_28[28] = {
    {-0x1.fe2db606d9717p-1, 0x1.2afc07ab1c5c9p-7}, {-0x1.f66d5e557556dp-1, 0x1.5a3a811ece501p-6},
    {-0x1.e894ac24695b7p-1, 0x1.0d874b8a226e9p-5}, {-0x1.d4cdda1efbc1bp-1, 0x1.6aaf12dc69637p-5},
    {-0x1.bb5643c49dae1p-1, 0x1.c3707aee4a4e2p-5}, {-0x1.9c7d0698c9abfp-1, 0x1.0b5b9f1c0a7a2p-4},
    {-0x1.78a1fd2f4d007p-1, 0x1.31c03a8e85de3p-4}, {-0x1.5034927b8f20ap-1, 0x1.546ebc0db6001p-4},
    {-0x1.23b266d495548p-1, 0x1.72fb5b81c1868p-4}, {-0x1.e74b92a4c42d9p-2, 0x1.8d0729614b3e3p-4},
    {-0x1.814813d2b129cp-2, 0x1.a2413503ecaa0p-4}, {-0x1.169752c4c22bbp-2, 0x1.b26787e30dbfbp-4},
    {-0x1.5109b3258335dp-3, 0x1.bd47f277562fdp-4}, {-0x1.c335a497a4809p-5, 0x1.c2c0a81eda19dp-4},
    {0x1.c335a497a4809p-5, 0x1.c2c0a81eda19dp-4},  {0x1.5109b3258335dp-3, 0x1.bd47f277562fdp-4},
    {0x1.169752c4c22bbp-2, 0x1.b26787e30dbfbp-4},  {0x1.814813d2b129cp-2, 0x1.a2413503ecaa0p-4},
    {0x1.e74b92a4c42d9p-2, 0x1.8d0729614b3e3p-4},  {0x1.23b266d495548p-1, 0x1.72fb5b81c1868p-4},
    {0x1.5034927b8f20ap-1, 0x1.546ebc0db6001p-4},  {0x1.78a1fd2f4d007p-1, 0x1.31c03a8e85de3p-4},
    {0x1.9c7d0698c9abfp-1, 0x1.0b5b9f1c0a7a2p-4},  {0x1.bb5643c49dae1p-1, 0x1.c3707aee4a4e2p-5},
    {0x1.d4cdda1efbc1bp-1, 0x1.6aaf12dc69637p-5},  {0x1.e894ac24695b7p-1, 0x1.0d874b8a226e9p-5},
    {0x1.f66d5e557556dp-1, 0x1.5a3a811ece501p-6},  {0x1.fe2db606d9717p-1, 0x1.2afc07ab1c5c9p-7},
};

const QuadratureNode gauss_legendre_55[55] = {
    {-0x1.ff84fa7773d47p-1, 0x1.3ba9ee5f3b115p-9}, {-0x1.fd783d40f5017p-1, 0x1.6ee9767cb9b82p-8},
    {-0x1.f9c9f5365de38p-1, 0x1.1f904b438f76fp-7}, {-0x1.f47cf146a14a4p-1, 0x1.86c37fa5491bep-7},
    {-0x1.ed9583a940ff0p-1, 0x1.ecb6f46521fd7p-7}, {-0x1.e519542915989p-1, 0x1.288b491bf3842p-6},
    {-0x1.db0f57897213bp-1, 0x1.59c7f43cf8fc8p-6}, {-0x1.cf7fc9145f7e1p-1, 0x1.89e9158e0c84cp-6},
    {-0x1.c27423a821741p-1, 0x1.b8c732e7bab44p-6}, {-0x1.b3f719e048398p-1, 0x1.e63bdc421da0ap-6},
    {-0x1.a4148d495e624p-1, 0x1.0910e54110d2fp-5}, {-0x1.92d9849fd6f44p-1, 0x1.1e2a7ee20a354p-5},
    {-0x1.805421200c062p-1, 0x1.32596d613f33cp-5}, {-0x1.6c9392ef3e0adp-1, 0x1.458d23946d5fbp-5},
    {-0x1.57a80ca6bc990p-1, 0x1.57b5e258e48ecp-5}, {-0x1.41a2b60b47bcep-1, 0x1.68c4c57b5a20cp-5},
    {-0x1.2a959dfb7b2dcp-1, 0x1.78abcfed09f76p-5}, {-0x1.1293aba0c2fcap-1, 0x1.875df73bbc649p-5},
    {-0x1.f3611dddf2830p-2, 0x1.94cf2e43166fap-5}, {-0x1.c00160fec024ep-2, 0x1.a0f46f0e550e7p-5},
    {-0x1.8b3241a8669f4p-2, 0x1.abc3c3e24a4edp-5}, {-0x1.551f0e251553ep-2, 0x1.b5344f682aa98p-5},
    {-0x1.1df41e816b2e2p-2, 0x1.bd3e53f2732c0p-5}, {-0x1.cbbd605e81b65p-3, 0x1.c3db39d5ef989p-5},
    {-0x1.5a1981d8ad88bp-3, 0x1.c90594d1aa257p-5}, {-0x1.ceb3a42d4ab8ap-4, 0x1.ccb9288154dffp-5},
    {-0x1.cf71a9efd240ap-5, 0x1.cef2ebd686782p-5}, {0.0, 0x1.cfb10b95f0ce9p-5},
    {0x1.cf71a9efd240ap-5, 0x1.cef2ebd686782p-5},  {0x1.ceb3a42d4ab8ap-4, 0x1.ccb9288154dffp-5},
    {0x1.5a1981d8ad88bp-3, 0x1.c90594d1aa257p-5},  {0x1.cbbd605e81b65p-3, 0x1.c3db39d5ef989p-5},
    {0x1.1df41e816b2e2p-2, 0x1.bd3e53f2732c0p-5},  {0x1.551f0e251553ep-2, 0x1.b5344f682aa98p-5},
    {0x1.8b3241a8669f4p-2, 0x1.abc3c3e24a4edp-5},  {0x1.c00160fec024ep-2, 0x1.a0f46f0e550e7p-5},
    {0x1.f3611dddf2830p-2, 0x1.94cf2e43166fap-5},  {0x1.1293aba0c2fcap-1, 0x1.875df73bbc649p-5},
    {0x1.2a959dfb7b2dcp-1, 0x1.78abcfed09f76p-5},  {0x1.41a2b60b47bcep-1, 0x1.68c4c57b5a20cp-5},
    {0x1.57a80ca6bc990p-1, 0x1.57b5e258e48ecp-5},  {0x1.6c9392ef3e0adp-1, 0x1.458d23946d5fbp-5},
    {0x1.805421200c062p-1, 0x1.32596d613f33cp-5},  {0x1.92d9849fd6f44p-1, 0x1.1e2a7ee20a354p-5},
    {0x1.a4148d495e624p-1, 0x1.0910e54110d2fp-5},  {0x1.b3f719e048398p-1, 0x1.e63bdc421da0ap-6},
    {0x1.c27423a821741p-1, 0x1.b8c732e7bab44p-6},  {0x1.cf7fc9145f7e1p-1, 0x1.89e9158e0c84cp-6},
    {0x1.db0f57897213bp-1, 0x1.59c7f43cf8fc8p-6},  {0x1.e519542915989p-1, 0x1.288b491bf3842p-6},
    {0x1.ed9583a940ff0p-1, 0x1.ecb6f46521fd7p-7},  {0x1.f47cf146a14a4p-1, 0x1.86c37fa5491bep-7},
    {0x1.f9c9f5365de38p-1, 0x1.1f904b438f76fp-7},  {0x1.fd783d40f5017p-1, 0x1.6ee9767cb9b82p-8},
    {0x1.ff84fa7773d47p-1, 0x1.3ba9ee5f3b115p-9},
};

}  // namespace kestran
