<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>OverviewForm</name>
    <message>
        <source>Read all data</source>
        <translation>Alle Daten lesen</translation>
    </message>
</context>
</TS>
