<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>ComponentUpdateChecker</name>
    <message>
        <source>No connection to update information server at %1.</source>
        <translation>Keine Verbindung zum Server für Aktualisierungen bei %1.</translation>
    </message>
</context>
<context>
    <name>DataInterpreter</name>
    <message>
        <source>DXC not supported
</source>
        <translation>DXC nicht unterstützt
</translation>
    </message>
    <message>
        <source>DXC controller supported
</source>
        <translation>DXC-Steuergerät unterstützt
</translation>
    </message>
    <message>
        <source>Active device
</source>
        <translation>Aktives Gerät
</translation>
    </message>
    <message>
        <source>Passive device
</source>
        <translation>Passives Gerät
</translation>
    </message>
    <message>
        <source>Device not changeable by end-user
</source>
        <translation>Gerät nicht durch den Endbenutzer austauschbar
</translation>
    </message>
    <message>
        <source>Device changeable by the end-user
</source>
        <translation>Gerät durch den Endbenutzer austauschbar
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality not supported
</source>
        <translation>Herstellerspezifische Funktionen nicht unterstützt
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality supported
</source>
        <translation>Herstellerspezifische Funktionen unterstützt
</translation>
    </message>
    <message>
        <source>Masterless mode not supported
</source>
        <translation>Betrieb ohne Master nicht unterstützt
</translation>
    </message>
    <message>
        <source>Masterless mode supported
</source>
        <translation>Betrieb ohne Master unterstützt
</translation>
    </message>
    <message>
        <source>CANopen device not in Bootloader mode; application software running</source>
        <translation>CANopen-Gerät nicht im Bootloader; Anwendungssoftware läuft</translation>
    </message>
    <message>
        <source>Bootloader active; no application software is running</source>
        <translation>Bootloader aktiv; keine Anwendungssoftware läuft</translation>
    </message>
    <message>
        <source>Over voltage alarm supported</source>
        <translation>Überspannungsalarm unterstützt</translation>
    </message>
    <message>
        <source>Under voltage alarm supported</source>
        <translation>Unterspannungsalarm unterstützt</translation>
    </message>
    <message>
        <source>Output over current alarm supported</source>
        <translation>Überstromalarm am Ausgang unterstützt</translation>
    </message>
    <message>
        <source>Input over current alarm supported</source>
        <translation>Überstromalarm am Eingang unterstützt</translation>
    </message>
    <message>
        <source>Electronic over temperature alarm supported</source>
        <translation>Übertemperaturalarm der Elektronik unterstützt</translation>
    </message>
    <message>
        <source>Battery cells over temperature alarm supported</source>
        <translation>Übertemperaturalarm der Akkuzellen unterstützt</translation>
    </message>
    <message>
        <source>Communication error alarm supported</source>
        <translation>Alarm bei Kommunikationsfehler unterstützt</translation>
    </message>
    <message>
        <source>Battery compatibility error alarm supported</source>
        <translation>Alarm bei Kompatibilitätsfehler des Akkus unterstützt</translation>
    </message>
    <message>
        <source>Electronic power stage defect alarm supported</source>
        <translation>Alarm bei Defekt der Leistungsendstufe unterstützt</translation>
    </message>
    <message>
        <source>Fuse blown alarm supported</source>
        <translation>Alarm bei durchgebrannter Sicherung unterstützt</translation>
    </message>
    <message>
        <source>Cell damaged alarm supported</source>
        <translation>Alarm bei beschädigter Zelle unterstützt</translation>
    </message>
    <message>
        <source>Charge over temperature alarm supported</source>
        <translation>Alarm bei Übertemperatur beim Laden unterstützt</translation>
    </message>
    <message>
        <source>Discharge over temperature alarm supported</source>
        <translation>Alarm bei Übertemperatur beim Entladen unterstützt</translation>
    </message>
    <message>
        <source>Sensor damaged alarm supported</source>
        <translation>Alarm bei beschädigtem Sensor unterstützt</translation>
    </message>
    <message>
        <source>Wire broken alarm supported</source>
        <translation>Alarm bei Drahtbruch unterstützt</translation>
    </message>
    <message>
        <source>Isolation damaged alarm supported</source>
        <translation>Alarm bei beschädigter Isolation unterstützt</translation>
    </message>
    <message>
        <source>Device is able to switch off or on</source>
        <translation>Gerät kann sich aus- und einschalten</translation>
    </message>
    <message>
        <source>Device is possibly active</source>
        <translation>Gerät ist möglicherweise aktiv</translation>
    </message>
    <message>
        <source>Device is a master capable</source>
        <translation>Gerät kann Master sein</translation>
    </message>
    <message>
        <source>Device is able to switch to sleep mode</source>
        <translation>Gerät kann in den Schlafmodus wechseln</translation>
    </message>
    <message>
        <source>Device is able to limit the input current</source>
        <translation>Gerät kann den Eingangsstrom begrenzen</translation>
    </message>
    <message>
        <source>Device is able to limit the output current</source>
        <translation>Gerät kann den Ausgangsstrom begrenzen</translation>
    </message>
    <message>
        <source>Device is able to limit the input voltage</source>
        <translation>Gerät kann die Eingangsspannung begrenzen</translation>
    </message>
    <message>
        <source>Device is able to limit the output voltage</source>
        <translation>Gerät kann die Ausgangsspannung begrenzen</translation>
    </message>
    <message>
        <source>Device is able to transmit dynamic limitation</source>
        <translation>Gerät kann dynamische Grenzwerte senden</translation>
    </message>
    <message>
        <source>Device is able to receive dynamic limitation</source>
        <translation>Gerät kann dynamische Grenzwerte empfangen</translation>
    </message>
    <message>
        <source>Mechanical locking with charge&amp;lock cable supported</source>
        <translation>Mechanische Verriegelung mit Lade- und Schließkabel unterstützt</translation>
    </message>
    <message>
        <source>Optical alarm supported</source>
        <translation>Optischer Alarm unterstützt</translation>
    </message>
    <message>
        <source>Vibration alarm supported</source>
        <translation>Vibrationsalarm unterstützt</translation>
    </message>
    <message>
        <source>RFID-key supported</source>
        <translation>RFID-Schlüssel unterstützt</translation>
    </message>
    <message>
        <source>Mechanical key supported</source>
        <translation>Mechanischer Schlüssel unterstützt</translation>
    </message>
    <message>
        <source>GPS position tracking supported</source>
        <translation>GPS-Ortung unterstützt</translation>
    </message>
    <message>
        <source>Acoustic alarm supported</source>
        <translation>Akustischer Alarm unterstützt</translation>
    </message>
    <message>
        <source>Softlock is supported</source>
        <translation>Elektronische Wegfahrsperre (Softlock) unterstützt</translation>
    </message>
    <message>
        <source>Mechanical locking (except charge&amp;lock cable) supported</source>
        <translation>Mechanische Verriegelung (außer mit Lade- und Schließkabel) unterstützt</translation>
    </message>
    <message>
        <source>Security not supported</source>
        <translation>Diebstahlschutz nicht unterstützt</translation>
    </message>
    <message>
        <source>Security device; activation in a very secure environment only</source>
        <translation>Diebstahlschutzgerät; Aktivierung nur in besonders gesicherter Umgebung</translation>
    </message>
    <message>
        <source>Internal device; user has the possibility to activate the key</source>
        <translation>Internes Gerät; der Benutzer kann den Schlüssel aktivieren</translation>
    </message>
    <message>
        <source>External device; temporary keys required</source>
        <translation>Externes Gerät; temporäre Schlüssel nötig</translation>
    </message>
    <message>
        <source>Internal device, simple changeable; automatic activation of the key resp. simple key learning possible</source>
        <translation>Internes Gerät, leicht austauschbar; Schlüssel wird automatisch aktiviert oder lässt sich einfach anlernen</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25 km/h)</source>
        <translation>Pedelec mit Geschwindigkeitsgrenze (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45 km/h)</source>
        <translation>Pedelec mit Geschwindigkeitsgrenze (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45 km/h)</source>
        <translation>Pedelec mit höherer Geschwindigkeit (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;25 km/h)</source>
        <translation>Elektrofahrrad mit Geschwindigkeitsgrenze (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;45 km/h)</source>
        <translation>Elektrofahrrad mit Geschwindigkeitsgrenze (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Motor-bike with speed (&gt;45 km/h)</source>
        <translation>Motorrad mit höherer Geschwindigkeit (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;32 km/h) USA</source>
        <translation>Elektrofahrrad mit Geschwindigkeitsgrenze (&lt;32 km/h), USA</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;20 km/h) CN</source>
        <translation>Elektrofahrrad mit Geschwindigkeitsgrenze (&lt;20 km/h), China</translation>
    </message>
    <message>
        <source>Scooter</source>
        <translation>Roller</translation>
    </message>
    <message>
        <source>Robot</source>
        <translation>Roboter</translation>
    </message>
    <message>
        <source>Wheelchair</source>
        <translation>Rollstuhl</translation>
    </message>
    <message>
        <source>Chemistry not specified</source>
        <translation>Zellchemie nicht angegeben</translation>
    </message>
    <message>
        <source>Lead acid (PbA)</source>
        <translation>Blei-Säure (PbA)</translation>
    </message>
    <message>
        <source>Nickel cadmium</source>
        <translation>Nickel-Cadmium</translation>
    </message>
    <message>
        <source>Nickel zinc (Ni-Zn)</source>
        <translation>Nickel-Zink (Ni-Zn)</translation>
    </message>
    <message>
        <source>Reserved</source>
        <translation>Reserviert</translation>
    </message>
    <message>
        <source>Nickel iron (Ni-Fe)</source>
        <translation>Nickel-Eisen (Ni-Fe)</translation>
    </message>
    <message>
        <source>Silver oxide</source>
        <translation>Silberoxid</translation>
    </message>
    <message>
        <source>Nickel hydrogen (NiH2)</source>
        <translation>Nickel-Wasserstoff (NiH2)</translation>
    </message>
    <message>
        <source>Nickel metal hydride</source>
        <translation>Nickel-Metallhydrid</translation>
    </message>
    <message>
        <source>Zinc/Alkaline/Manganese dioxide</source>
        <translation>Zink/Alkali/Mangandioxid</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - carbon anode</source>
        <translation>Lithium-Ionen (Li-Ion) - Kohlenstoffanode</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - Lithium titanate anode</source>
        <translation>Lithium-Ionen (Li-Ion) - Lithiumtitanat-Anode</translation>
    </message>
    <message>
        <source>Zinc bromine</source>
        <translation>Zink-Brom</translation>
    </message>
    <message>
        <source>Metal air</source>
        <translation>Metall-Luft</translation>
    </message>
    <message>
        <source>Lithium-Iron-sulphide</source>
        <translation>Lithium-Eisensulfid</translation>
    </message>
    <message>
        <source>Sodium beta</source>
        <translation>Natrium-Beta</translation>
    </message>
    <message>
        <source>Alarm not supported</source>
        <translation>Kein Alarm unterstützt</translation>
    </message>
    <message>
        <source>No installed batteries</source>
        <translation>Keine Akkus eingebaut</translation>
    </message>
    <message>
        <source>No connected batteries</source>
        <translation>Keine Akkus verbunden</translation>
    </message>
    <message>
        <source>No unconnected installed batteries</source>
        <translation>Keine eingebauten Akkus ohne Verbindung</translation>
    </message>
    <message>
        <source>Security properties</source>
        <translation>Eigenschaften des Diebstahlschutzes</translation>
    </message>
    <message>
        <source>Key class</source>
        <translation>Schlüsselklasse</translation>
    </message>
    <message>
        <source>undefined</source>
        <translation>nicht definiert</translation>
    </message>
    <message>
        <source>DX is on,</source>
        <translation>DX ist ein,</translation>
    </message>
    <message>
        <source>DX is awake,</source>
        <translation>DX ist wach,</translation>
    </message>
    <message>
        <source>DX in standby,</source>
        <translation>DX in Bereitschaft,</translation>
    </message>
    <message>
        <source>DX runs,</source>
        <translation>DX läuft,</translation>
    </message>
    <message>
        <source>DX warning,</source>
        <translation>DX-Warnung,</translation>
    </message>
    <message>
        <source>DX error,</source>
        <translation>DX-Fehler,</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25km/h</source>
        <translation>Pedelec mit Geschwindigkeitsgrenze (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45km/h</source>
        <translation>Pedelec mit Geschwindigkeitsgrenze (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45km/h</source>
        <translation>Pedelec mit höherer Geschwindigkeit (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>%1,</source>
        <translation>%1,</translation>
    </message>
    <message>
        <source>reserved</source>
        <translation>reserviert</translation>
    </message>
    <message>
        <source>Vendor ID</source>
        <translation>Hersteller-ID</translation>
    </message>
    <message>
        <source>Generic error</source>
        <translation>Allgemeiner Fehler</translation>
    </message>
    <message>
        <source>
Current Error</source>
        <translation>
Stromfehler</translation>
    </message>
    <message>
        <source>
Voltage Error</source>
        <translation>
Spannungsfehler</translation>
    </message>
    <message>
        <source>
Temperature Error</source>
        <translation>
Temperaturfehler</translation>
    </message>
    <message>
        <source>
Communication error</source>
        <translation>
Kommunikationsfehler</translation>
    </message>
    <message>
        <source>
Device profile specific</source>
        <translation>
Geräteprofilspezifischer Fehler</translation>
    </message>
    <message>
        <source>
Manufactor specific error</source>
        <translation>
Herstellerspezifischer Fehler</translation>
    </message>
    <message>
        <source>Locking mechanism supported
</source>
        <translation>Verriegelung unterstützt
</translation>
    </message>
    <message>
        <source>No locking mechanism supported
</source>
        <translation>Keine Verriegelung unterstützt
</translation>
    </message>
    <message>
        <source>Device is locked locally
</source>
        <translation>Gerät ist lokal gesperrt
</translation>
    </message>
    <message>
        <source>Device is not locked locally
</source>
        <translation>Gerät ist nicht lokal gesperrt
</translation>
    </message>
    <message>
        <source>No manipulation detected
</source>
        <translation>Keine Manipulation erkannt
</translation>
    </message>
    <message>
        <source>Manipulation detected
</source>
        <translation>Manipulation erkannt
</translation>
    </message>
    <message>
        <source>Device does not own the current encryption key
</source>
        <translation>Gerät besitzt den aktuellen Kryptoschlüssel nicht
</translation>
    </message>
    <message>
        <source>Device owns current encryption key
</source>
        <translation>Gerät besitzt den aktuellen Kryptoschlüssel
</translation>
    </message>
    <message>
        <source>Initial encryption key is missing
</source>
        <translation>Anfangs-Kryptoschlüssel fehlt
</translation>
    </message>
    <message>
        <source>Device owns initial encryption key
</source>
        <translation>Gerät besitzt den Anfangs-Kryptoschlüssel
</translation>
    </message>
    <message>
        <source>No network lock requested
</source>
        <translation>Keine Netzwerksperre angefordert
</translation>
    </message>
    <message>
        <source>Locking of all virtual devices in the EMS requested
</source>
        <translation>Sperre aller virtuellen Geräte im EMS angefordert
</translation>
    </message>
    <message>
        <source>Network is not locked
</source>
        <translation>Netzwerk ist nicht gesperrt
</translation>
    </message>
    <message>
        <source>All virtual devices in the EMS that support softlocking are locked
</source>
        <translation>Alle virtuellen Geräte im EMS mit elektronischer Wegfahrsperre (Softlock) sind gesperrt
</translation>
    </message>
    <message>
        <source>No action</source>
        <translation>Keine Aktion</translation>
    </message>
    <message>
        <source>Enter operating</source>
        <translation>In den Betrieb gehen</translation>
    </message>
    <message>
        <source>Enter limiting</source>
        <translation>In die Begrenzung gehen</translation>
    </message>
    <message>
        <source>Enter connected</source>
        <translation>In den Zustand Verbunden gehen</translation>
    </message>
    <message>
        <source>Enter disconnected</source>
        <translation>In den Zustand Getrennt gehen</translation>
    </message>
    <message>
        <source>Enter masterless operating</source>
        <translation>In den Betrieb ohne Master gehen</translation>
    </message>
    <message>
        <source>Enter compatibillity check</source>
        <translation>In die Kompatibilitätsprüfung gehen</translation>
    </message>
    <message>
        <source>Enter sleep mode and keep local layer settings</source>
        <translation>In den Schlafmodus gehen und lokale Schichteinstellungen behalten</translation>
    </message>
    <message>
        <source>Enter sleep mode and set node id to 0xFF</source>
        <translation>In den Schlafmodus gehen und Knoten-ID auf 0xFF setzen</translation>
    </message>
    <message>
        <source>Current input active </source>
        <translation>Stromeingang aktiv </translation>
    </message>
    <message>
        <source>Current output active </source>
        <translation>Stromausgang aktiv </translation>
    </message>
    <message>
        <source>Fixed voltage input active </source>
        <translation>Festspannungseingang aktiv </translation>
    </message>
    <message>
        <source>Fixed voltage output active </source>
        <translation>Festspannungsausgang aktiv </translation>
    </message>
    <message>
        <source>Current regulation/limitation active </source>
        <translation>Stromregelung/-begrenzung aktiv </translation>
    </message>
    <message>
        <source>Voltage regulation/limitation active </source>
        <translation>Spannungsregelung/-begrenzung aktiv </translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Compatibility Check</source>
        <translation>Kompatibilitätsprüfung</translation>
    </message>
    <message>
        <source>Limiting</source>
        <translation>Begrenzung</translation>
    </message>
    <message>
        <source>Operating</source>
        <translation>In Betrieb</translation>
    </message>
    <message>
        <source>Masterless</source>
        <translation>Ohne Master</translation>
    </message>
    <message>
        <source>Sleep Mode</source>
        <translation>Schlafmodus</translation>
    </message>
    <message>
        <source>Powerline on </source>
        <translation>Versorgungsleitung ein </translation>
    </message>
    <message>
        <source>Powerline off </source>
        <translation>Versorgungsleitung aus </translation>
    </message>
    <message>
        <source>EMS is not sleeping, ready to work </source>
        <translation>EMS schläft nicht, arbeitsbereit </translation>
    </message>
    <message>
        <source>CAN communication is working properly </source>
        <translation>CAN-Kommunikation arbeitet einwandfrei </translation>
    </message>
    <message>
        <source>EMS warning </source>
        <translation>EMS-Warnung </translation>
    </message>
    <message>
        <source>EMS error </source>
        <translation>EMS-Fehler </translation>
    </message>
    <message>
        <source>Emergency shutdown</source>
        <translation>Notabschaltung</translation>
    </message>
    <message>
        <source>nothing active</source>
        <translation>nichts aktiv</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 A</source>
        <translation>%1 A</translation>
    </message>
    <message>
        <source>%1 Ah</source>
        <translation>%1 Ah</translation>
    </message>
    <message>
        <source>%1 Ah/day</source>
        <translation>%1 Ah/Tag</translation>
    </message>
    <message>
        <source>%1 Wh</source>
        <translation>%1 Wh</translation>
    </message>
    <message>
        <source>%1 Hz</source>
        <translation>%1 Hz</translation>
    </message>
    <message>
        <source>%1 Ohm</source>
        <translation>%1 Ohm</translation>
    </message>
    <message>
        <source>%1 V</source>
        <translation>%1 V</translation>
    </message>
    <message>
        <source>%1 degree</source>
        <translation>%1 Grad</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
    <message>
        <source>%1 N</source>
        <translation>%1 N</translation>
    </message>
    <message>
        <source>%1 rpm</source>
        <translation>%1 1/min</translation>
    </message>
    <message>
        <source>%1 revolution</source>
        <translation>%1 Umdrehungen</translation>
    </message>
    <message>
        <source>%1 Nm</source>
        <translation>%1 Nm</translation>
    </message>
    <message>
        <source>%1 km/h</source>
        <translation>%1 km/h</translation>
    </message>
    <message>
        <source>%1 bpm</source>
        <translation>%1 Schläge/min</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 °C</source>
        <translation>%1 °C</translation>
    </message>
    <message>
        <source>%1 °C/min</source>
        <translation>%1 °C/min</translation>
    </message>
    <message>
        <source>%1 days</source>
        <translation>%1 Tage</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 Minuten</translation>
    </message>
</context>
<context>
    <name>DataReader</name>
    <message>
        <source>            &lt;object index=&quot;0x%1&quot; sub=&quot;0x%2&quot; value=&quot;%3&quot; /&gt;
</source>
        <translatorcomment>A line of the exchange file, no text for people: every language keeps it as it is, or the files could not be read any more.</translatorcomment>
        <translation>            &lt;object index=&quot;0x%1&quot; sub=&quot;0x%2&quot; value=&quot;%3&quot; /&gt;
</translation>
    </message>
</context>
<context>
    <name>ExchangeFile</name>
    <message>
        <source>The file is not an exchange file: line %1, column %2 holds XML that exchange files never have (entities, or far too many attributes, levels or namespaces).</source>
        <translation>Die Datei ist keine Austauschdatei: In Zeile %1, Spalte %2 steht XML, das es in Austauschdateien nicht gibt (Entitäten oder viel zu viele Attribute, Ebenen oder Namensräume).</translation>
    </message>
    <message>
        <source>There is no node in the file.</source>
        <translation>In der Datei ist kein Knoten.</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Die Datei %1 kann nicht geschrieben werden: %2.</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2.</source>
        <translation>Die Datei %1 kann nicht gelesen werden: %2.</translation>
    </message>
    <message>
        <source>The file lists far more nodes than a vehicle can have, the first one too many in line %1, column %2.</source>
        <translation>Die Datei führt weit mehr Knoten auf, als ein Fahrzeug haben kann; der erste überzählige steht in Zeile %1, Spalte %2.</translation>
    </message>
    <message>
        <source>The file is not complete: it ends in line %1, column %2.</source>
        <translation>Die Datei ist nicht vollständig: Sie endet in Zeile %1, Spalte %2.</translation>
    </message>
    <message>
        <source>The file is not XML: line %1, column %2: %3</source>
        <translation>Die Datei ist kein XML: Zeile %1, Spalte %2: %3</translation>
    </message>
    <message>
        <source>The file %1 is far too large for an exchange file.</source>
        <translation>Die Datei %1 ist viel zu groß für eine Austauschdatei.</translation>
    </message>
</context>
<context>
    <name>OverviewForm</name>
    <message>
        <source>Form</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Node-Id</source>
        <translation>Knoten-ID</translation>
    </message>
    <message>
        <source>NMT-State</source>
        <translation>NMT-Status</translation>
    </message>
    <message>
        <source>DX FSA State</source>
        <translation>DX-FSA-Zustand</translation>
    </message>
    <message>
        <source>Device Parameters (fixed)</source>
        <translation>Geräteparameter (fest)</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Actual Values</source>
        <translation>Istwerte</translation>
    </message>
    <message>
        <source>Scan for devices and read all data from the components</source>
        <translation>Nach Geräten suchen und alle Daten der Komponenten lesen</translation>
    </message>
    <message>
        <source>Read all data</source>
        <translation>Alle Daten lesen</translation>
    </message>
    <message>
        <source>Export all data as XML file to later use.</source>
        <translation>Alle Daten zur späteren Verwendung als XML-Datei exportieren.</translation>
    </message>
    <message>
        <source>Export </source>
        <translation>Exportieren </translation>
    </message>
    <message>
        <source>Import exported data</source>
        <translation>Exportierte Daten importieren</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Generate and save a PDF Report of all  data from all devices</source>
        <translation>PDF-Bericht über alle Daten aller Geräte erzeugen und speichern</translation>
    </message>
    <message>
        <source>Save PDF Report</source>
        <translation>PDF-Bericht speichern</translation>
    </message>
    <message>
        <source>Check for Component update</source>
        <translation>Komponenten-Update suchen</translation>
    </message>
    <message>
        <source>Draxel Controller/Charger</source>
        <translation>Draxel-Steuergerät/Ladegerät</translation>
    </message>
    <message>
        <source>Draxel Controller</source>
        <translation>Draxel-Steuergerät</translation>
    </message>
    <message>
        <source>Voltage Converter/Charger</source>
        <translation>Spannungswandler/Ladegerät</translation>
    </message>
    <message>
        <source>Battery Pack</source>
        <translation>Akkupack</translation>
    </message>
    <message>
        <source>Motor Control unit</source>
        <translation>Motorsteuergerät</translation>
    </message>
    <message>
        <source>Load monitoring unit</source>
        <translation>Verbraucherüberwachung</translation>
    </message>
    <message>
        <source>HMI control unit/display</source>
        <translation>Bedieneinheit/Display</translation>
    </message>
    <message>
        <source>Security unit</source>
        <translation>Diebstahlschutzeinheit</translation>
    </message>
    <message>
        <source>Sensor unit</source>
        <translation>Sensoreinheit</translation>
    </message>
    <message>
        <source>Gateway unit</source>
        <translation>Gateway</translation>
    </message>
    <message>
        <source>Generator unit</source>
        <translation>Generator</translation>
    </message>
    <message>
        <source>Load unit</source>
        <translation>Verbraucher</translation>
    </message>
    <message>
        <source>manufacturer-specific device</source>
        <translation>herstellerspezifisches Gerät</translation>
    </message>
    <message>
        <source> External Device </source>
        <translation> Externes Gerät </translation>
    </message>
    <message>
        <source> VDN </source>
        <translation> VDN </translation>
    </message>
    <message>
        <source>Implemented specification versions</source>
        <translation>Umgesetzte Spezifikationsversionen</translation>
    </message>
    <message>
        <source>Security Status</source>
        <translation>Diebstahlschutzstatus</translation>
    </message>
    <message>
        <source>Battery Pack </source>
        <translation>Akkupack </translation>
    </message>
    <message>
        <source> highest temperature</source>
        <translation> höchste Temperatur</translation>
    </message>
    <message>
        <source> sensor </source>
        <translation> Sensor </translation>
    </message>
    <message>
        <source> temperature</source>
        <translation> Temperatur</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>Akkustatus</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Boot-up</source>
        <translation>Boot-up</translation>
    </message>
    <message>
        <source>Pre-Op</source>
        <translation>Pre-Op</translation>
    </message>
    <message>
        <source>Operational</source>
        <translation>Operational</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Stopped</translation>
    </message>
    <message>
        <source> external device </source>
        <translation> externes Gerät </translation>
    </message>
    <message>
        <source>Draxel FSA state</source>
        <translation>Draxel-FSA-Zustand</translation>
    </message>
    <message>
        <source>Device Type</source>
        <translation>Gerätetyp</translation>
    </message>
    <message>
        <source>Shows device type information</source>
        <translation>Zeigt Angaben zum Gerätetyp</translation>
    </message>
    <message>
        <source>Device information</source>
        <translation>Geräteinformationen</translation>
    </message>
    <message>
        <source>Error register</source>
        <translation>Fehlerregister</translation>
    </message>
    <message>
        <source>Shows detailed error information</source>
        <translation>Zeigt ausführliche Fehlerinformationen</translation>
    </message>
    <message>
        <source>Error field</source>
        <translation>Fehlerspeicher</translation>
    </message>
    <message>
        <source>Shows last occured errors</source>
        <translation>Zeigt die zuletzt aufgetretenen Fehler</translation>
    </message>
    <message>
        <source>Error information</source>
        <translation>Fehlerinformationen</translation>
    </message>
    <message>
        <source>Shows the implemented specifications</source>
        <translation>Zeigt die umgesetzten Spezifikationen</translation>
    </message>
    <message>
        <source>Implemented specification</source>
        <translation>Umgesetzte Spezifikation</translation>
    </message>
    <message>
        <source>Shows implemented security status</source>
        <translation>Zeigt den Diebstahlschutzstatus</translation>
    </message>
    <message>
        <source>Draxel Tool XML files (*.dxxml)</source>
        <translation>XML-Dateien des Draxel Tool (*.dxxml)</translation>
    </message>
    <message>
        <source>No connection to Draxel. Please connect to Draxel and retry.</source>
        <translation>Keine Verbindung zu Draxel. Bitte mit Draxel verbinden und erneut versuchen.</translation>
    </message>
    <message>
        <source>Export Draxel LEV Network information</source>
        <translation>Informationen des Draxel-LEV-Netzwerks exportieren</translation>
    </message>
    <message>
        <source>Import Draxel LEV Network information</source>
        <translation>Informationen des Draxel-LEV-Netzwerks importieren</translation>
    </message>
    <message>
        <source>No component selected.</source>
        <translation>Keine Komponente ausgewählt.</translation>
    </message>
    <message>
        <source>No devices found. Read all data from Draxel or import data from XML file.</source>
        <translation>Keine Geräte gefunden. Lesen Sie alle Daten von Draxel oder importieren Sie Daten aus einer XML-Datei.</translation>
    </message>
    <message>
        <source>Characters not shown: %1</source>
        <translation>Nicht angezeigte Zeichen: %1</translation>
    </message>
    <message>
        <source>Save text</source>
        <translation>Text speichern</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Die Datei %1 kann nicht geschrieben werden: %2.</translation>
    </message>
    <message>
        <source>Save text...</source>
        <translation>Text speichern...</translation>
    </message>
</context>
<context>
    <name>pdfWriter</name>
    <message>
        <source>Draxel FSA state</source>
        <translation>Draxel-FSA-Zustand</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>Akkustatus</translation>
    </message>
    <message>
        <source>printing broke off, perhaps because the disk is full</source>
        <translation>das Drucken brach ab, vielleicht weil der Datenträger voll ist</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Die Datei %1 kann nicht geschrieben werden: %2.</translation>
    </message>
</context>
</TS>
