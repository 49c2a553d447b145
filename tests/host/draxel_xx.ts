<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>StatusLine</name>
    <message>
        <source>Not connected.</source>
        <translation>Nicht verbunden.</translation>
    </message>
</context>
</TS>
