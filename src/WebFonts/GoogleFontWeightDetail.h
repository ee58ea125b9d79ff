// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GoogleFontWeightDetail: which styles a font family has in one weight.

#ifndef ORVAUTILS_GOOGLEFONTWEIGHTDETAIL_H
#define ORVAUTILS_GOOGLEFONTWEIGHTDETAIL_H

#include "orvautils_export.h"

/// The styles of one weight of a family; a plain value, without any style when default-constructed.
struct ORVAUTILS_EXPORT GoogleFontWeightDetail
{
    bool hasNormal = false; ///< an upright style exists
    bool hasItalic = false; ///< an italic style exists
};

/// Whether \a a and \a b agree on both styles.
/// \relates GoogleFontWeightDetail
inline bool operator==(const GoogleFontWeightDetail& a, const GoogleFontWeightDetail& b)
{
    return a.hasNormal == b.hasNormal && a.hasItalic == b.hasItalic;
}

/// Whether \a a and \a b differ in a style.
/// \relates GoogleFontWeightDetail
inline bool operator!=(const GoogleFontWeightDetail& a, const GoogleFontWeightDetail& b)
{
    return !(a == b);
}

#endif // ORVAUTILS_GOOGLEFONTWEIGHTDETAIL_H
