"""Writes the cases of decnumber_test.cpp, worked out by Python's decimal: python3 makecases.py > decnumber_cases.inc"""
import decimal
import itertools

decimal.getcontext().prec = 1000
decimal.getcontext().Emax = 999999999
decimal.getcontext().Emin = -999999999
TEXTS = ["0", "-0", "0.00", "1", "-1", "+7", "123.45", "-123.45", "1E3", "1e-3", "0.000001", "0.0000001", "12E-9", "1.50",
         "9999999999999999999", "18446744073709551615", "18446744073709551616", "-9223372036854775808", "1E999999999",
         "1E-999999999", "00012.3400", ".5", "5.", "Infinity", "-inf", "12345678901234567890123456789012345678901234567890"]
ROUNDINGS = [decimal.ROUND_CEILING, decimal.ROUND_UP, decimal.ROUND_HALF_UP, decimal.ROUND_HALF_EVEN, decimal.ROUND_HALF_DOWN,
             decimal.ROUND_DOWN, decimal.ROUND_FLOOR]

print("constexpr TextCase TEXT_CASES[] = {")
for text in TEXTS:
    print('    {"%s", "%s"},' % (text, decimal.Decimal(text)))
print("};\n\nconstexpr CompareCase COMPARE_CASES[] = {")
for a, b in itertools.product(TEXTS[::2], TEXTS[::3]):
    print('    {"%s", "%s", %d},' % (a, b, decimal.Decimal(a).compare(decimal.Decimal(b))))
print("};\n\nconstexpr RoundCase ROUND_CASES[] = {")
for text in ["0.5", "1.5", "2.5", "-0.5", "-1.5", "2.4999", "2.5001", "0.05", "1E1", "1E-30", "-7", "99.99"]:
    values = ["%d" % abs(int(decimal.Decimal(text).to_integral_value(r))) for r in ROUNDINGS]
    print('    {"%s", {%s}},' % (text, ", ".join(values)))
print("};")
