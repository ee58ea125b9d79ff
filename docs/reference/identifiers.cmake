# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Gives the index of the Qt Help project (PROJECT) the identifiers that Qt Creator asks for: "Class"
# and "Class::function", and for a macro, which is described beside a class, its name alone. Doxygen
# puts its anchors behind them. The names lose the parameters, as the index of Qt's own documents has
# them.
# Usage: cmake -DPROJECT=index.qhp -P identifiers.cmake

# CMake's own meaning of semicolons and brackets does not touch text in quotes.
file(READ "${PROJECT}" text)
string(REGEX REPLACE
  "(<keyword name=\"[^\"(]+)[^\"]*(\" id=\"[^\"]*)_(\"|a[0-9a-f]+\")" "\\1\\2\"" text "${text}")
string(REGEX REPLACE " id=\"[A-Za-z]+::(ORVAUTILS_[A-Z_]+)\"" " id=\"\\1\"" text "${text}")
file(WRITE "${PROJECT}" "${text}")
