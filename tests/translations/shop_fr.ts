<?xml version="1.0" encoding="utf-8"?>
<!--
SPDX-FileCopyrightText: 2026 The OrvaUtils authors
SPDX-License-Identifier: MIT
-->
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Test</name>
    <message>
        <source>file</source>
        <translation>shop_fr</translation>
    </message>
    <message>
        <source>greeting</source>
        <translation>Bienvenue</translation>
    </message>
</context>
</TS>
