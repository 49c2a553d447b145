<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>BusAddress</name>
    <message>
        <source>&quot;%1&quot; names no bus. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>„%1“ nennt keinen Bus. Schreiben Sie ihn als PLUGIN:INTERFACE, zum Beispiel socketcan:can0.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; names no back end before the colon. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>„%1“ nennt vor dem Doppelpunkt keinen Treiber. Schreiben Sie den Bus als PLUGIN:INTERFACE, zum Beispiel socketcan:can0.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; names no interface after the colon. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>„%1“ nennt nach dem Doppelpunkt keine Schnittstelle. Schreiben Sie den Bus als PLUGIN:INTERFACE, zum Beispiel socketcan:can0.</translation>
    </message>
</context>
<context>
    <name>BusConnection</name>
    <message>
        <source>The attempt to connect was ended by another one.</source>
        <translation>Der Verbindungsversuch wurde durch einen anderen beendet.</translation>
    </message>
    <message>
        <source>The bus %1 cannot be opened: %2</source>
        <translation>Der Bus %1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>The bus %1 cannot be used. %2</source>
        <translation>Der Bus %1 kann nicht benutzt werden. %2</translation>
    </message>
    <message>
        <source>The interface %1 does not take the bit rate %2. Setting it needs the library libsocketcan and the right to configure interfaces; &quot;ip link set %1 type can bitrate %2&quot; does it by hand, then connect without a bit rate.</source>
        <translation>Die Schnittstelle %1 nimmt die Bitrate %2 nicht an. Zum Einstellen sind die Bibliothek libsocketcan und das Recht zum Konfigurieren von Schnittstellen nötig; von Hand geht es mit „ip link set %1 type can bitrate %2“, danach ohne Bitrate verbinden.</translation>
    </message>
</context>
<context>
    <name>BusSettings</name>
    <message>
        <source>&quot;%1&quot; is no bit rate. Give it in bit/s, for example 250000.</source>
        <translation>„%1“ ist keine Bitrate. Geben Sie sie in bit/s an, zum Beispiel 250000.</translation>
    </message>
</context>
<context>
    <name>CanOpen</name>
    <message>
        <source>The toggle bit did not alternate</source>
        <translation>Das Toggle-Bit wechselte nicht</translation>
    </message>
    <message>
        <source>The SDO protocol timed out</source>
        <translation>Zeitüberschreitung im SDO-Protokoll</translation>
    </message>
    <message>
        <source>The command specifier is not valid or unknown</source>
        <translation>Das Kommando ist ungültig oder unbekannt</translation>
    </message>
    <message>
        <source>The block size is not valid</source>
        <translation>Die Blockgröße ist ungültig</translation>
    </message>
    <message>
        <source>The sequence number is not valid</source>
        <translation>Die Sequenznummer ist ungültig</translation>
    </message>
    <message>
        <source>The checksum is wrong</source>
        <translation>Die Prüfsumme ist falsch</translation>
    </message>
    <message>
        <source>The device is out of memory</source>
        <translation>Das Gerät hat keinen freien Speicher mehr</translation>
    </message>
    <message>
        <source>The access to the object is not supported</source>
        <translation>Der Zugriff auf das Objekt wird nicht unterstützt</translation>
    </message>
    <message>
        <source>The object can only be written</source>
        <translation>Das Objekt kann nur geschrieben werden</translation>
    </message>
    <message>
        <source>The object can only be read</source>
        <translation>Das Objekt kann nur gelesen werden</translation>
    </message>
    <message>
        <source>The object does not exist</source>
        <translation>Das Objekt gibt es nicht</translation>
    </message>
    <message>
        <source>The object cannot be mapped to a PDO</source>
        <translation>Das Objekt kann nicht auf ein PDO abgebildet werden</translation>
    </message>
    <message>
        <source>The mapped objects exceed the length of a PDO</source>
        <translation>Die abgebildeten Objekte sind länger als ein PDO</translation>
    </message>
    <message>
        <source>The parameter is incompatible</source>
        <translation>Der Parameter passt nicht</translation>
    </message>
    <message>
        <source>The device has an internal incompatibility</source>
        <translation>Im Gerät passt etwas nicht zusammen</translation>
    </message>
    <message>
        <source>The access failed because of a hardware error</source>
        <translation>Der Zugriff scheiterte an einem Hardwarefehler</translation>
    </message>
    <message>
        <source>The length does not match the data type</source>
        <translation>Die Länge passt nicht zum Datentyp</translation>
    </message>
    <message>
        <source>There are more bytes than the data type has</source>
        <translation>Es sind mehr Bytes, als der Datentyp hat</translation>
    </message>
    <message>
        <source>There are fewer bytes than the data type has</source>
        <translation>Es sind weniger Bytes, als der Datentyp hat</translation>
    </message>
    <message>
        <source>The sub-index does not exist</source>
        <translation>Den Subindex gibt es nicht</translation>
    </message>
    <message>
        <source>The value is not valid</source>
        <translation>Der Wert ist ungültig</translation>
    </message>
    <message>
        <source>The value is too high</source>
        <translation>Der Wert ist zu hoch</translation>
    </message>
    <message>
        <source>The value is too low</source>
        <translation>Der Wert ist zu niedrig</translation>
    </message>
    <message>
        <source>The maximum is less than the minimum</source>
        <translation>Das Maximum ist kleiner als das Minimum</translation>
    </message>
    <message>
        <source>The resource is not available</source>
        <translation>Die Ressource ist nicht verfügbar</translation>
    </message>
    <message>
        <source>General error</source>
        <translation>Allgemeiner Fehler</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored</source>
        <translation>Die Daten können nicht übertragen oder gespeichert werden</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored because of local control</source>
        <translation>Die Daten können wegen lokaler Steuerung nicht übertragen oder gespeichert werden</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored in the present state of the device</source>
        <translation>Die Daten können im jetzigen Gerätezustand nicht übertragen oder gespeichert werden</translation>
    </message>
    <message>
        <source>There is no object dictionary</source>
        <translation>Es gibt kein Objektverzeichnis</translation>
    </message>
    <message>
        <source>No data is available</source>
        <translation>Es sind keine Daten vorhanden</translation>
    </message>
    <message>
        <source>Abort code %1</source>
        <translation>Abbruchcode %1</translation>
    </message>
</context>
<context>
    <name>CanOpen::CanPort</name>
    <message>
        <source>The CAN interface did not connect within %1 seconds.</source>
        <translation>Die CAN-Schnittstelle hat sich innerhalb von %1 Sekunden nicht verbunden.</translation>
    </message>
    <message>
        <source>The CAN interface was disconnected.</source>
        <translation>Die CAN-Schnittstelle wurde getrennt.</translation>
    </message>
    <message>
        <source>The CAN interface failed: %1</source>
        <translation>Die CAN-Schnittstelle fiel aus: %1</translation>
    </message>
    <message>
        <source>The CAN interface does not send any more: %1</source>
        <translation>Die CAN-Schnittstelle sendet nicht mehr: %1</translation>
    </message>
</context>
<context>
    <name>ConnectionBar</name>
    <message>
        <source>%1 bit/s</source>
        <translation>%1 bit/s</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Open this bus</source>
        <translation>Diesen Bus öffnen</translation>
    </message>
    <message>
        <source>Close the bus</source>
        <translation>Den Bus schließen</translation>
    </message>
    <message>
        <source>&amp;Back end:</source>
        <translation>&amp;Treiber:</translation>
    </message>
    <message>
        <source>The kind of CAN adapter</source>
        <translation>Die Art des CAN-Adapters</translation>
    </message>
    <message>
        <source>&amp;Interface:</source>
        <translation>&amp;Schnittstelle:</translation>
    </message>
    <message>
        <source>One of the adapters found; others can be typed in</source>
        <translation>Einer der gefundenen Adapter; andere können eingetippt werden</translation>
    </message>
    <message>
        <source>none found: type a name</source>
        <translation>keine gefunden: Namen eintippen</translation>
    </message>
    <message>
        <source>Look for adapters again</source>
        <translation>Erneut nach Adaptern suchen</translation>
    </message>
    <message>
        <source>Bit &amp;rate:</source>
        <translation>Bit&amp;rate:</translation>
    </message>
    <message>
        <source>Set on the adapter before connecting</source>
        <translation>Wird vor dem Verbinden am Adapter eingestellt</translation>
    </message>
    <message>
        <source>as configured</source>
        <translation>wie eingestellt</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
</context>
<context>
    <name>DraxelHost</name>
    <message>
        <source>Looks into the CANopen bus of light electric vehicles.</source>
        <translation>Blickt in den CANopen-Bus von Leichtelektrofahrzeugen.</translation>
    </message>
    <message>
        <source>Choose this bus, for example socketcan:can0 or simulated:pedelec.</source>
        <translation>Diesen Bus wählen, zum Beispiel socketcan:can0 oder simulated:pedelec.</translation>
    </message>
    <message>
        <source>Set this bit rate (bit/s) when connecting.</source>
        <translation>Diese Bitrate (bit/s) beim Verbinden einstellen.</translation>
    </message>
    <message>
        <source>Connect to the bus at once.</source>
        <translation>Sofort mit dem Bus verbinden.</translation>
    </message>
    <message>
        <source>The language, for example de.</source>
        <translation>Die Sprache, zum Beispiel de.</translation>
    </message>
    <message>
        <source>Load the plug-ins of this folder.</source>
        <translation>Die Plug-ins dieses Ordners laden.</translation>
    </message>
    <message>
        <source>--bitrate needs --bus.</source>
        <translation>--bitrate braucht --bus.</translation>
    </message>
    <message>
        <source>What is &quot;%1&quot; for?</source>
        <translation>Wozu dient „%1“?</translation>
    </message>
</context>
<context>
    <name>InterfaceWatch</name>
    <message>
        <source>The interface %1 is there.</source>
        <translation>Die Schnittstelle %1 ist da.</translation>
    </message>
    <message>
        <source>The interface %1 is down. Switch it on, for example with &quot;ip link set %1 up&quot;.</source>
        <translation>Die Schnittstelle %1 ist abgeschaltet. Schalten Sie sie ein, zum Beispiel mit „ip link set %1 up“.</translation>
    </message>
    <message>
        <source>There is no interface %1. Check that the adapter is plugged in.</source>
        <translation>Es gibt keine Schnittstelle %1. Prüfen Sie, ob der Adapter eingesteckt ist.</translation>
    </message>
    <message>
        <source>The interface %1 was removed and came back.</source>
        <translation>Die Schnittstelle %1 wurde entfernt und ist wieder da.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>%1 has no window.</source>
        <translation>%1 hat kein Fenster.</translation>
    </message>
    <message>
        <source>No plug-in is loaded. Put one into the folder &quot;plugins&quot; beside the program and start it again.</source>
        <translation>Kein Plug-in ist geladen. Legen Sie eines in den Ordner „plugins“ neben dem Programm und starten Sie es neu.</translation>
    </message>
    <message>
        <source>Which interface is meant? Choose one, or type its name, and connect again.</source>
        <translation>Welche Schnittstelle ist gemeint? Wählen Sie eine oder tippen Sie ihren Namen ein, und verbinden Sie erneut.</translation>
    </message>
    <message>
        <source>Node %1 did not answer when asked for object %2; the read ended there.</source>
        <translation>Knoten %1 antwortete nicht auf die Frage nach Objekt %2; das Lesen endete dort.</translation>
    </message>
</context>
<context>
    <name>PluginLibrary</name>
    <message>
        <source>The file %1 is no plug-in: %2</source>
        <translation>Die Datei %1 ist kein Plug-in: %2</translation>
    </message>
    <message>
        <source>The library %1 is a plug-in for another program.</source>
        <translation>Die Bibliothek %1 ist ein Plug-in für ein anderes Programm.</translation>
    </message>
    <message>
        <source>The plug-in %1 cannot be loaded: %2</source>
        <translation>Das Plug-in %1 kann nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>The plug-in %1 was made for another version of this program (it does not know the interface %2).</source>
        <translation>Das Plug-in %1 ist für eine andere Version dieses Programms gemacht (es kennt die Schnittstelle %2 nicht).</translation>
    </message>
</context>
<context>
    <name>PluginSession</name>
    <message>
        <source>There is no plug-in in the folder %1.</source>
        <translation>Im Ordner %1 ist kein Plug-in.</translation>
    </message>
</context>
<context>
    <name>SimulatedBus</name>
    <message>
        <source>The simulated bus is down</source>
        <translation>Der simulierte Bus ist abgeschaltet</translation>
    </message>
    <message>
        <source>The simulated bus runs at %1 bit/s already, not at %2</source>
        <translation>Der simulierte Bus läuft schon mit %1 bit/s, nicht mit %2</translation>
    </message>
</context>
<context>
    <name>Simulator::SimulatedCanDevice</name>
    <message>
        <source>The simulated bus is down</source>
        <translation>Der simulierte Bus ist abgeschaltet</translation>
    </message>
    <message>
        <source>%1 bit/s is no bit rate of CAN; possible are 10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000 and 1000000, or 0 for as fast as possible</source>
        <translation>%1 bit/s ist keine CAN-Bitrate; möglich sind 10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000 und 1000000 oder 0 für so schnell wie möglich</translation>
    </message>
    <message>
        <source>Cannot write this kind of frame</source>
        <translation>Diese Art von Frame kann nicht gesendet werden</translation>
    </message>
    <message>
        <source>No such device or address</source>
        <translation>Kein solches Gerät oder keine solche Adresse</translation>
    </message>
    <message>
        <source>No buffer space available</source>
        <translation>Kein Pufferplatz frei</translation>
    </message>
    <message>
        <source>The simulated bus is gone</source>
        <translation>Der simulierte Bus ist nicht mehr da</translation>
    </message>
    <message>
        <source>There is no node %1 for the fault &quot;%2&quot;</source>
        <translation>Für die Störung „%2“ gibt es keinen Knoten %1</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>Frames: %1/s</source>
        <translation>Frames: %1/s</translation>
    </message>
    <message>
        <source>Nodes heard: %1</source>
        <translation>Gehörte Knoten: %1</translation>
    </message>
    <message>
        <source>SDO: %1 read, %2 refused, %3 without answer</source>
        <translation>SDO: %1 gelesen, %2 abgelehnt, %3 ohne Antwort</translation>
    </message>
    <message>
        <source>Uploads since the bus was connected; %1 requests were repeated, %2 frames sent again</source>
        <translation>Uploads seit dem Verbinden des Busses; wiederholte Anfragen: %1, erneut gesendete Frames: %2</translation>
    </message>
    <message>
        <source>Not connected.</source>
        <translation>Nicht verbunden.</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>Verbinde mit %1 ...</translation>
    </message>
    <message>
        <source>Connected to %1 at %2 kbit/s.</source>
        <translation>Verbunden mit %1 bei %2 kbit/s.</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Verbunden mit %1.</translation>
    </message>
    <message>
        <source>Connection lost: %1 Trying to connect again ...</source>
        <translation>Verbindung verloren: %1 Neuer Verbindungsversuch läuft ...</translation>
    </message>
</context>
</TS>
