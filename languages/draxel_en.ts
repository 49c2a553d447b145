<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>ServiceReport</name>
    <message numerus="yes">
        <source>%n fault(s)</source>
        <translation>
            <numerusform>%n fault</numerusform>
            <numerusform>%n faults</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n warning(s)</source>
        <translation>
            <numerusform>%n warning</numerusform>
            <numerusform>%n warnings</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n note(s)</source>
        <translation>
            <numerusform>%n note</numerusform>
            <numerusform>%n notes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n component(s) not fully checked</source>
        <translation>
            <numerusform>%n component not fully checked</numerusform>
            <numerusform>%n components not fully checked</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>And %n more change(s).</source>
        <translation>
            <numerusform>And %n more change.</numerusform>
            <numerusform>And %n more changes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n more object(s)</source>
        <translation>
            <numerusform>%n more object</numerusform>
            <numerusform>%n more objects</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SnapshotWords</name>
    <message numerus="yes">
        <source>The answer has %n byte(s), which does not fit the object.</source>
        <translation>
            <numerusform>The answer has %n byte, which does not fit the object.</numerusform>
            <numerusform>The answer has %n bytes, which does not fit the object.</numerusform>
        </translation>
    </message>
</context>
</TS>
