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
        <translation>app_fr</translation>
    </message>
    <message>
        <source>greeting</source>
        <translation>Bonjour</translation>
    </message>
</context>
<context>
    <name>LocalisationTools</name>
    <message>
        <source>Duplicate</source>
        <translation>Dupliquer</translation>
    </message>
    <message>
        <source>Unselect All</source>
        <translation>Tout désélectionner</translation>
    </message>
</context>
</TS>
