// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A program that links to the same Qt modules as the library, without using them.

int main()
{
    return 0;
}
