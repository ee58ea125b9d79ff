// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A program that links the Qt modules that the library links, and uses nothing of them.

int main()
{
    return 0;
}
