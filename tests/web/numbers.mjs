// node numbers.mjs COUNT: numbers that are hard to read or to write exactly, one a line: shortest digits, many digits, and
// digits at and beside the middle between two doubles.
const view = new DataView(new ArrayBuffer(8));
let state = 88172645463325252n;
const random = () => {
  state ^= (state << 13n) & 0xffffffffffffffffn;
  state ^= state >> 7n;
  return (state ^= (state << 17n) & 0xffffffffffffffffn);
};

// The middle between the positive double of these bits and the next, in all its digits.
function middle(bits) {
  const exponent = bits >> 52n;
  const whole = 2n * ((bits & 0xfffffffffffffn) | (exponent > 0n ? 1n << 52n : 0n)) + 1n;
  const power = (exponent > 0n ? exponent : 1n) - 1076n;
  return power >= 0n ? `${whole << power}` : `${whole * 5n ** -power}E-${-power}`;
}

const count = Number(process.argv[2]);
const lines = [];
while (lines.length < count) {
  const bits = random() & 0x7fffffffffffffffn;
  view.setBigUint64(0, lines.length % 3 ? bits : (bits & 0xfffffffffffffn) | (900n + (bits >> 52n) % 250n) << 52n);
  const number = view.getFloat64(0);
  if (!Number.isFinite(number)) continue;
  lines.push(`${number}`, number.toPrecision(1 + Number(bits % 25n)));
  if (lines.length % 20 > 2) continue;
  const [digits, exponent = '0'] = middle(view.getBigUint64(0)).split('E');
  const beside = digits.replace(/.$/, (last) => (last === '0' ? '1' : Number(last) - 1));
  const kept = 18 + Number(bits % 30n);
  lines.push(`${digits}E${exponent}`, `${digits}1E${Number(exponent) - 1}`, `${beside}E${exponent}`);
  if (digits.length > kept) lines.push(`${digits.slice(0, kept)}E${digits.length - kept + Number(exponent)}`);
}
console.log(lines.join('\n'));
