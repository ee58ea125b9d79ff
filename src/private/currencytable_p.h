// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What ISO 4217 and CLDR define for currencies and QLocale does not provide: the decimals of the
// minor unit and the symbols that are understood outside the currency's own countries.

#ifndef ORVAUTILS_CURRENCYTABLE_P_H
#define ORVAUTILS_CURRENCYTABLE_P_H

namespace OrvaUtilsPrivate {

/// The codes of the currencies whose minor unit has \a decimals.
struct MinorUnits
{
    int decimals;
    const char* codes; ///< separated by blanks
};

/// ISO 4217, without the codes for which it gives no minor unit: precious metals, units of account,
/// the codes for tests and for no currency. Codes that have been withdrawn since 2020 are still
/// listed.
constexpr MinorUnits minorUnitsOfCurrencies[] = {
    {0, "BIF CLP DJF GNF ISK JPY KMF KRW PYG RWF UGX UYI VND VUV XAF XOF XPF"},
    {2,
     "AED AFN ALL AMD ANG AOA ARS AUD AWG AZN BAM BBD BDT BGN BMD BND BOB BOV BRL BSD BTN BWP "
     "BYN BZD CAD CDF CHE CHF CHW CNY COP COU CRC CUC CUP CVE CZK DKK DOP DZD EGP ERN ETB EUR "
     "FJD FKP GBP GEL GHS GIP GMD GTQ GYD HKD HNL HRK HTG HUF IDR ILS INR IRR JMD KES KGS KHR "
     "KPW KYD KZT LAK LBP LKR LRD LSL MAD MDL MGA MKD MMK MNT MOP MRU MUR MVR MWK MXN MXV MYR "
     "MZN NAD NGN NIO NOK NPR NZD PAB PEN PGK PHP PKR PLN QAR RON RSD RUB SAR SBD SCR SDG SEK "
     "SGD SHP SLE SLL SOS SRD SSP STN SVC SYP SZL THB TJS TMT TOP TRY TTD TWD TZS UAH USD USN "
     "UYU UZS VED VES WST XCD XCG YER ZAR ZMW ZWG ZWL"},
    {3, "BHD IQD JOD KWD LYD OMR TND"},
    {4, "CLF UYW"},
};

/// A symbol of a currency that no other currency has.
struct InternationalSymbol
{
    const char* code;
    const char* symbol; ///< UTF-8
};

/// CLDR's symbols for English, which writes every other currency as its code.
constexpr InternationalSymbol internationalSymbols[] = {
    {"AUD", "A$"},     {"BRL", "R$"},     {"CAD", "CA$"},    {"CNY", "CN\u00a5"},
    {"EUR", "\u20ac"}, {"GBP", "\u00a3"}, {"HKD", "HK$"},    {"ILS", "\u20aa"},
    {"INR", "\u20b9"}, {"JPY", "\u00a5"}, {"KRW", "\u20a9"}, {"MXN", "MX$"},
    {"NZD", "NZ$"},    {"PHP", "\u20b1"}, {"TWD", "NT$"},    {"USD", "$"},
    {"VND", "\u20ab"}, {"XAF", "FCFA"},   {"XCD", "EC$"},    {"XOF", "F\u202fCFA"},
    {"XPF", "CFPF"},
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_CURRENCYTABLE_P_H
