<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>ArchiveBrowser</name>
    <message numerus="yes">
        <source>%n visit(s) deleted.</source>
        <translation>
            <numerusform>%n visit deleted.</numerusform>
            <numerusform>%n visits deleted.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n visit(s) added.</source>
        <translation>
            <numerusform>%n visit added.</numerusform>
            <numerusform>%n visits added.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ArchivePage</name>
    <message numerus="yes">
        <source>Delete %n visit(s) for good?</source>
        <translation>
            <numerusform>Delete %n visit for good?</numerusform>
            <numerusform>Delete %n visits for good?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ChangeSummary</name>
    <message numerus="yes">
        <source>%n values</source>
        <translation>
            <numerusform>%n value</numerusform>
            <numerusform>%n values</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CheckupWords</name>
    <message numerus="yes">
        <source>%n device(s) found, still looking</source>
        <translation>
            <numerusform>%n device found, still looking</numerusform>
            <numerusform>%n devices found, still looking</numerusform>
        </translation>
    </message>
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
        <source>%n component(s) not checked</source>
        <translation>
            <numerusform>%n component not checked</numerusform>
            <numerusform>%n components not checked</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ComparisonDialog</name>
    <message numerus="yes">
        <source>%n change(s)</source>
        <translation>
            <numerusform>%n change</numerusform>
            <numerusform>%n changes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DeviceFiles</name>
    <message numerus="yes">
        <source>%n node(s) of the trace are known from %1 now.</source>
        <translation>
            <numerusform>%n node of the trace is known from %1 now.</numerusform>
            <numerusform>%n nodes of the trace are known from %1 now.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FrameDetails</name>
    <message numerus="yes">
        <source>and %n more frame(s)</source>
        <translation>
            <numerusform>and %n more frame</numerusform>
            <numerusform>and %n more frames</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HealthJudgement</name>
    <message numerus="yes">
        <source>%n devices are heard, and nothing is wrong with them.</source>
        <translation>
            <numerusform>%n device is heard, and nothing is wrong with it.</numerusform>
            <numerusform>%n devices are heard, and nothing is wrong with them.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KindMenu</name>
    <message numerus="yes">
        <source>%n kind(s)</source>
        <translation>
            <numerusform>%n kind</numerusform>
            <numerusform>%n kinds</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>%n visit(s) that had waited are in the archive now.</source>
        <translation>
            <numerusform>%n visit that had waited is in the archive now.</numerusform>
            <numerusform>%n visits that had waited are in the archive now.</numerusform>
        </translation>
    </message>
</context>
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
    <name>ShownVehicle</name>
    <message numerus="yes">
        <source>Not complete: %n value(s) could not be read on %1. The messages name them.</source>
        <translation>
            <numerusform>Not complete: %n value could not be read on %1. The messages name it.</numerusform>
            <numerusform>Not complete: %n values could not be read on %1. The messages name them.</numerusform>
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
<context>
    <name>TracePage</name>
    <message numerus="yes">
        <source>%n line(s) could not be read.</source>
        <translation>
            <numerusform>%n line could not be read.</numerusform>
            <numerusform>%n lines could not be read.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TraceRecorder</name>
    <message numerus="yes">
        <source>Recorded: %1, %n frame(s)</source>
        <translation>
            <numerusform>Recorded: %1, %n frame</numerusform>
            <numerusform>Recorded: %1, %n frames</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TraceSession</name>
    <message numerus="yes">
        <source>Saved: %1, %n frame(s)</source>
        <translation>
            <numerusform>Saved: %1, %n frame</numerusform>
            <numerusform>Saved: %1, %n frames</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TraceToolbar</name>
    <message numerus="yes">
        <source>A new file every %n m&amp;inute(s)</source>
        <translation>
            <numerusform>A new file every %n m&amp;inute</numerusform>
            <numerusform>A new file every %n m&amp;inutes</numerusform>
        </translation>
    </message>
</context>
</TS>
