<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Console</name>
    <message numerus="yes">
        <source>%n failure(s):</source>
        <translation>
            <numerusform>%n failure:</numerusform>
            <numerusform>%n failures:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ContactSheet</name>
    <message numerus="yes">
        <source>%n photograph(s)</source>
        <translation>
            <numerusform>%n photograph</numerusform>
            <numerusform>%n photographs</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Program</name>
    <message numerus="yes">
        <source>Stopped: %1 of %n photograph(s) imported, no page written</source>
        <translation>
            <numerusform>Stopped: %1 of %n photograph imported, no page written</numerusform>
            <numerusform>Stopped: %1 of %n photographs imported, no page written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photograph(s) imported: %2</source>
        <translation>
            <numerusform>%1 of %n photograph imported: %2</numerusform>
            <numerusform>%1 of %n photographs imported: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Nothing is wrong: %n photograph(s) can be published</source>
        <translation>
            <numerusform>Nothing is wrong: %n photograph can be published</numerusform>
            <numerusform>Nothing is wrong: %n photographs can be published</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Watch</name>
    <message numerus="yes">
        <source>Changes of %n file(s) may be missed: %1</source>
        <translation>
            <numerusform>Changes of %n file may be missed: %1</numerusform>
            <numerusform>Changes of %n files may be missed: %1</numerusform>
        </translation>
    </message>
</context>
</TS>
