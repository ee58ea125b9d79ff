// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontWeightDetail.h"

#include <type_traits>

// A catalogue contains one for each weight of each family: it stays as small as its two flags.
static_assert(std::is_trivially_copyable<GoogleFontWeightDetail>::value, "a plain value");
static_assert(sizeof(GoogleFontWeightDetail) == 2 * sizeof(bool), "nothing but the two flags");
