<?xml version="1.0" encoding="utf-8"?>
<!--
SPDX-FileCopyrightText: 2026 The OrvaUtils authors
SPDX-License-Identifier: MIT
-->
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Test</name>
    <message>
        <source>file</source>
        <translation>app_en</translation>
    </message>
    <message>
        <source>greeting</source>
        <translation>Good morning</translation>
    </message>
    <message>
        <source>only English</source>
        <translation>English alone</translation>
    </message>
</context>
</TS>
