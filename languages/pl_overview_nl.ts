<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl_NL" sourcelanguage="en">
<context>
    <name>ComponentUpdateChecker</name>
    <message>
        <source>No connection to update information server at %1.</source>
        <translation>Geen verbinding met de server voor updates van %1.</translation>
    </message>
</context>
<context>
    <name>DataInterpreter</name>
    <message>
        <source>DXC not supported
</source>
        <translation>DXC niet ondersteund
</translation>
    </message>
    <message>
        <source>DXC controller supported
</source>
        <translation>DXC-controller ondersteund
</translation>
    </message>
    <message>
        <source>Active device
</source>
        <translation>Actief apparaat
</translation>
    </message>
    <message>
        <source>Passive device
</source>
        <translation>Passief apparaat
</translation>
    </message>
    <message>
        <source>Device not changeable by end-user
</source>
        <translation>Apparaat niet door de eindgebruiker te vervangen
</translation>
    </message>
    <message>
        <source>Device changeable by the end-user
</source>
        <translation>Apparaat door de eindgebruiker te vervangen
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality not supported
</source>
        <translation>Fabrikantspecifieke functies niet ondersteund
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality supported
</source>
        <translation>Fabrikantspecifieke functies ondersteund
</translation>
    </message>
    <message>
        <source>Masterless mode not supported
</source>
        <translation>Bedrijf zonder master niet ondersteund
</translation>
    </message>
    <message>
        <source>Masterless mode supported
</source>
        <translation>Bedrijf zonder master ondersteund
</translation>
    </message>
    <message>
        <source>CANopen device not in Bootloader mode; application software running</source>
        <translation>CANopen-apparaat niet in de bootloader; toepassingssoftware actief</translation>
    </message>
    <message>
        <source>Bootloader active; no application software is running</source>
        <translation>Bootloader actief; geen toepassingssoftware actief</translation>
    </message>
    <message>
        <source>Over voltage alarm supported</source>
        <translation>Alarm voor overspanning ondersteund</translation>
    </message>
    <message>
        <source>Under voltage alarm supported</source>
        <translation>Alarm voor onderspanning ondersteund</translation>
    </message>
    <message>
        <source>Output over current alarm supported</source>
        <translation>Alarm voor overstroom op de uitgang ondersteund</translation>
    </message>
    <message>
        <source>Input over current alarm supported</source>
        <translation>Alarm voor overstroom op de ingang ondersteund</translation>
    </message>
    <message>
        <source>Electronic over temperature alarm supported</source>
        <translation>Alarm voor overtemperatuur van de elektronica ondersteund</translation>
    </message>
    <message>
        <source>Battery cells over temperature alarm supported</source>
        <translation>Alarm voor overtemperatuur van de accucellen ondersteund</translation>
    </message>
    <message>
        <source>Communication error alarm supported</source>
        <translation>Alarm voor communicatiefout ondersteund</translation>
    </message>
    <message>
        <source>Battery compatibility error alarm supported</source>
        <translation>Alarm voor compatibiliteitsfout van de accu ondersteund</translation>
    </message>
    <message>
        <source>Electronic power stage defect alarm supported</source>
        <translation>Alarm voor defecte vermogenstrap ondersteund</translation>
    </message>
    <message>
        <source>Fuse blown alarm supported</source>
        <translation>Alarm voor doorgebrande zekering ondersteund</translation>
    </message>
    <message>
        <source>Cell damaged alarm supported</source>
        <translation>Alarm voor beschadigde cel ondersteund</translation>
    </message>
    <message>
        <source>Charge over temperature alarm supported</source>
        <translation>Alarm voor overtemperatuur bij het laden ondersteund</translation>
    </message>
    <message>
        <source>Discharge over temperature alarm supported</source>
        <translation>Alarm voor overtemperatuur bij het ontladen ondersteund</translation>
    </message>
    <message>
        <source>Sensor damaged alarm supported</source>
        <translation>Alarm voor beschadigde sensor ondersteund</translation>
    </message>
    <message>
        <source>Wire broken alarm supported</source>
        <translation>Alarm voor draadbreuk ondersteund</translation>
    </message>
    <message>
        <source>Isolation damaged alarm supported</source>
        <translation>Alarm voor beschadigde isolatie ondersteund</translation>
    </message>
    <message>
        <source>Device is able to switch off or on</source>
        <translation>Apparaat kan uit- en inschakelen</translation>
    </message>
    <message>
        <source>Device is possibly active</source>
        <translation>Apparaat is mogelijk actief</translation>
    </message>
    <message>
        <source>Device is a master capable</source>
        <translation>Apparaat kan master zijn</translation>
    </message>
    <message>
        <source>Device is able to switch to sleep mode</source>
        <translation>Apparaat kan naar de slaapstand gaan</translation>
    </message>
    <message>
        <source>Device is able to limit the input current</source>
        <translation>Apparaat kan de ingangsstroom begrenzen</translation>
    </message>
    <message>
        <source>Device is able to limit the output current</source>
        <translation>Apparaat kan de uitgangsstroom begrenzen</translation>
    </message>
    <message>
        <source>Device is able to limit the input voltage</source>
        <translation>Apparaat kan de ingangsspanning begrenzen</translation>
    </message>
    <message>
        <source>Device is able to limit the output voltage</source>
        <translation>Apparaat kan de uitgangsspanning begrenzen</translation>
    </message>
    <message>
        <source>Device is able to transmit dynamic limitation</source>
        <translation>Apparaat kan dynamische grenswaarden verzenden</translation>
    </message>
    <message>
        <source>Device is able to receive dynamic limitation</source>
        <translation>Apparaat kan dynamische grenswaarden ontvangen</translation>
    </message>
    <message>
        <source>Mechanical locking with charge&amp;lock cable supported</source>
        <translation>Mechanische vergrendeling met laad- en slotkabel ondersteund</translation>
    </message>
    <message>
        <source>Optical alarm supported</source>
        <translation>Optisch alarm ondersteund</translation>
    </message>
    <message>
        <source>Vibration alarm supported</source>
        <translation>Trilalarm ondersteund</translation>
    </message>
    <message>
        <source>RFID-key supported</source>
        <translation>RFID-sleutel ondersteund</translation>
    </message>
    <message>
        <source>Mechanical key supported</source>
        <translation>Mechanische sleutel ondersteund</translation>
    </message>
    <message>
        <source>GPS position tracking supported</source>
        <translation>Gps-plaatsbepaling ondersteund</translation>
    </message>
    <message>
        <source>Acoustic alarm supported</source>
        <translation>Akoestisch alarm ondersteund</translation>
    </message>
    <message>
        <source>Softlock is supported</source>
        <translation>Elektronische startblokkering (softlock) ondersteund</translation>
    </message>
    <message>
        <source>Mechanical locking (except charge&amp;lock cable) supported</source>
        <translation>Mechanische vergrendeling (behalve met laad- en slotkabel) ondersteund</translation>
    </message>
    <message>
        <source>Security not supported</source>
        <translation>Diefstalbeveiliging niet ondersteund</translation>
    </message>
    <message>
        <source>Security device; activation in a very secure environment only</source>
        <translation>Diefstalbeveiligingsapparaat; alleen in een sterk beveiligde omgeving te activeren</translation>
    </message>
    <message>
        <source>Internal device; user has the possibility to activate the key</source>
        <translation>Intern apparaat; de gebruiker kan de sleutel activeren</translation>
    </message>
    <message>
        <source>External device; temporary keys required</source>
        <translation>Extern apparaat; tijdelijke sleutels nodig</translation>
    </message>
    <message>
        <source>Internal device, simple changeable; automatic activation of the key resp. simple key learning possible</source>
        <translation>Intern apparaat, eenvoudig te vervangen; sleutel wordt automatisch geactiveerd of is eenvoudig in te leren</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25 km/h)</source>
        <translation>Pedelec met snelheidsbegrenzing (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45 km/h)</source>
        <translation>Pedelec met snelheidsbegrenzing (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45 km/h)</source>
        <translation>Pedelec met hogere snelheid (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;25 km/h)</source>
        <translation>Elektrische fiets met snelheidsbegrenzing (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;45 km/h)</source>
        <translation>Elektrische fiets met snelheidsbegrenzing (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Motor-bike with speed (&gt;45 km/h)</source>
        <translation>Motorfiets met hogere snelheid (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;32 km/h) USA</source>
        <translation>Elektrische fiets met snelheidsbegrenzing (&lt;32 km/h), VS</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;20 km/h) CN</source>
        <translation>Elektrische fiets met snelheidsbegrenzing (&lt;20 km/h), China</translation>
    </message>
    <message>
        <source>Scooter</source>
        <translation>Scooter</translation>
    </message>
    <message>
        <source>Robot</source>
        <translation>Robot</translation>
    </message>
    <message>
        <source>Wheelchair</source>
        <translation>Rolstoel</translation>
    </message>
    <message>
        <source>Chemistry not specified</source>
        <translation>Celchemie niet opgegeven</translation>
    </message>
    <message>
        <source>Lead acid (PbA)</source>
        <translation>Loodzuur (PbA)</translation>
    </message>
    <message>
        <source>Nickel cadmium</source>
        <translation>Nikkel-cadmium</translation>
    </message>
    <message>
        <source>Nickel zinc (Ni-Zn)</source>
        <translation>Nikkel-zink (Ni-Zn)</translation>
    </message>
    <message>
        <source>Reserved</source>
        <translation>Gereserveerd</translation>
    </message>
    <message>
        <source>Nickel iron (Ni-Fe)</source>
        <translation>Nikkel-ijzer (Ni-Fe)</translation>
    </message>
    <message>
        <source>Silver oxide</source>
        <translation>Zilveroxide</translation>
    </message>
    <message>
        <source>Nickel hydrogen (NiH2)</source>
        <translation>Nikkel-waterstof (NiH2)</translation>
    </message>
    <message>
        <source>Nickel metal hydride</source>
        <translation>Nikkel-metaalhydride</translation>
    </message>
    <message>
        <source>Zinc/Alkaline/Manganese dioxide</source>
        <translation>Zink/alkaline/mangaandioxide</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - carbon anode</source>
        <translation>Lithium-ion (Li-Ion) - koolstofanode</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - Lithium titanate anode</source>
        <translation>Lithium-ion (Li-Ion) - lithiumtitanaatanode</translation>
    </message>
    <message>
        <source>Zinc bromine</source>
        <translation>Zink-broom</translation>
    </message>
    <message>
        <source>Metal air</source>
        <translation>Metaal-lucht</translation>
    </message>
    <message>
        <source>Lithium-Iron-sulphide</source>
        <translation>Lithium-ijzersulfide</translation>
    </message>
    <message>
        <source>Sodium beta</source>
        <translation>Natrium-bèta</translation>
    </message>
    <message>
        <source>Alarm not supported</source>
        <translation>Geen alarm ondersteund</translation>
    </message>
    <message>
        <source>No installed batteries</source>
        <translation>Geen accu’s geïnstalleerd</translation>
    </message>
    <message>
        <source>No connected batteries</source>
        <translation>Geen accu’s verbonden</translation>
    </message>
    <message>
        <source>No unconnected installed batteries</source>
        <translation>Geen geïnstalleerde accu’s zonder verbinding</translation>
    </message>
    <message>
        <source>Security properties</source>
        <translation>Eigenschappen van de diefstalbeveiliging</translation>
    </message>
    <message>
        <source>Key class</source>
        <translation>Sleutelklasse</translation>
    </message>
    <message>
        <source>undefined</source>
        <translation>niet gedefinieerd</translation>
    </message>
    <message>
        <source>DX is on,</source>
        <translation>DX is aan,</translation>
    </message>
    <message>
        <source>DX is awake,</source>
        <translation>DX is wakker,</translation>
    </message>
    <message>
        <source>DX in standby,</source>
        <translation>DX stand-by,</translation>
    </message>
    <message>
        <source>DX runs,</source>
        <translation>DX draait,</translation>
    </message>
    <message>
        <source>DX warning,</source>
        <translation>DX-waarschuwing,</translation>
    </message>
    <message>
        <source>DX error,</source>
        <translation>DX-fout,</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25km/h</source>
        <translation>Pedelec met snelheidsbegrenzing (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45km/h</source>
        <translation>Pedelec met snelheidsbegrenzing (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45km/h</source>
        <translation>Pedelec met hogere snelheid (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>%1,</source>
        <translation>%1,</translation>
    </message>
    <message>
        <source>reserved</source>
        <translation>gereserveerd</translation>
    </message>
    <message>
        <source>Vendor ID</source>
        <translation>Fabrikant-ID</translation>
    </message>
    <message>
        <source>Generic error</source>
        <translation>Algemene fout</translation>
    </message>
    <message>
        <source>
Current Error</source>
        <translation>
Stroomfout</translation>
    </message>
    <message>
        <source>
Voltage Error</source>
        <translation>
Spanningsfout</translation>
    </message>
    <message>
        <source>
Temperature Error</source>
        <translation>
Temperatuurfout</translation>
    </message>
    <message>
        <source>
Communication error</source>
        <translation>
Communicatiefout</translation>
    </message>
    <message>
        <source>
Device profile specific</source>
        <translation>
Apparaatprofielspecifieke fout</translation>
    </message>
    <message>
        <source>
Manufactor specific error</source>
        <translation>
Fabrikantspecifieke fout</translation>
    </message>
    <message>
        <source>Locking mechanism supported
</source>
        <translation>Vergrendeling ondersteund
</translation>
    </message>
    <message>
        <source>No locking mechanism supported
</source>
        <translation>Geen vergrendeling ondersteund
</translation>
    </message>
    <message>
        <source>Device is locked locally
</source>
        <translation>Apparaat is lokaal vergrendeld
</translation>
    </message>
    <message>
        <source>Device is not locked locally
</source>
        <translation>Apparaat is niet lokaal vergrendeld
</translation>
    </message>
    <message>
        <source>No manipulation detected
</source>
        <translation>Geen manipulatie gedetecteerd
</translation>
    </message>
    <message>
        <source>Manipulation detected
</source>
        <translation>Manipulatie gedetecteerd
</translation>
    </message>
    <message>
        <source>Device does not own the current encryption key
</source>
        <translation>Apparaat heeft de huidige encryptiesleutel niet
</translation>
    </message>
    <message>
        <source>Device owns current encryption key
</source>
        <translation>Apparaat heeft de huidige encryptiesleutel
</translation>
    </message>
    <message>
        <source>Initial encryption key is missing
</source>
        <translation>De initiële encryptiesleutel ontbreekt
</translation>
    </message>
    <message>
        <source>Device owns initial encryption key
</source>
        <translation>Apparaat heeft de initiële encryptiesleutel
</translation>
    </message>
    <message>
        <source>No network lock requested
</source>
        <translation>Geen netwerkvergrendeling gevraagd
</translation>
    </message>
    <message>
        <source>Locking of all virtual devices in the EMS requested
</source>
        <translation>Vergrendeling van alle virtuele apparaten in het EMS gevraagd
</translation>
    </message>
    <message>
        <source>Network is not locked
</source>
        <translation>Netwerk is niet vergrendeld
</translation>
    </message>
    <message>
        <source>All virtual devices in the EMS that support softlocking are locked
</source>
        <translation>Alle virtuele apparaten in het EMS met elektronische startblokkering (softlock) zijn vergrendeld
</translation>
    </message>
    <message>
        <source>No action</source>
        <translation>Geen actie</translation>
    </message>
    <message>
        <source>Enter operating</source>
        <translation>Naar bedrijf gaan</translation>
    </message>
    <message>
        <source>Enter limiting</source>
        <translation>Naar begrenzing gaan</translation>
    </message>
    <message>
        <source>Enter connected</source>
        <translation>Naar de toestand Verbonden gaan</translation>
    </message>
    <message>
        <source>Enter disconnected</source>
        <translation>Naar de toestand Niet verbonden gaan</translation>
    </message>
    <message>
        <source>Enter masterless operating</source>
        <translation>Naar bedrijf zonder master gaan</translation>
    </message>
    <message>
        <source>Enter compatibillity check</source>
        <translation>Naar compatibiliteitscontrole gaan</translation>
    </message>
    <message>
        <source>Enter sleep mode and keep local layer settings</source>
        <translation>Naar de slaapstand gaan en de lokale laaginstellingen behouden</translation>
    </message>
    <message>
        <source>Enter sleep mode and set node id to 0xFF</source>
        <translation>Naar de slaapstand gaan en node-ID op 0xFF zetten</translation>
    </message>
    <message>
        <source>Current input active </source>
        <translation>Stroomingang actief </translation>
    </message>
    <message>
        <source>Current output active </source>
        <translation>Stroomuitgang actief </translation>
    </message>
    <message>
        <source>Fixed voltage input active </source>
        <translation>Ingang met vaste spanning actief </translation>
    </message>
    <message>
        <source>Fixed voltage output active </source>
        <translation>Uitgang met vaste spanning actief </translation>
    </message>
    <message>
        <source>Current regulation/limitation active </source>
        <translation>Stroomregeling/-begrenzing actief </translation>
    </message>
    <message>
        <source>Voltage regulation/limitation active </source>
        <translation>Spanningsregeling/-begrenzing actief </translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Niet verbonden</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbonden</translation>
    </message>
    <message>
        <source>Compatibility Check</source>
        <translation>Compatibiliteitscontrole</translation>
    </message>
    <message>
        <source>Limiting</source>
        <translation>Begrenzing</translation>
    </message>
    <message>
        <source>Operating</source>
        <translation>In bedrijf</translation>
    </message>
    <message>
        <source>Masterless</source>
        <translation>Zonder master</translation>
    </message>
    <message>
        <source>Sleep Mode</source>
        <translation>Slaapstand</translation>
    </message>
    <message>
        <source>Powerline on </source>
        <translation>Voedingslijn aan </translation>
    </message>
    <message>
        <source>Powerline off </source>
        <translation>Voedingslijn uit </translation>
    </message>
    <message>
        <source>EMS is not sleeping, ready to work </source>
        <translation>EMS is wakker, klaar voor gebruik </translation>
    </message>
    <message>
        <source>CAN communication is working properly </source>
        <translation>CAN-communicatie werkt goed </translation>
    </message>
    <message>
        <source>EMS warning </source>
        <translation>EMS-waarschuwing </translation>
    </message>
    <message>
        <source>EMS error </source>
        <translation>EMS-fout </translation>
    </message>
    <message>
        <source>Emergency shutdown</source>
        <translation>Nooduitschakeling</translation>
    </message>
    <message>
        <source>nothing active</source>
        <translation>niets actief</translation>
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
        <translation>%1 Ah/dag</translation>
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
        <translation>%1 graden</translation>
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
        <translation>%1 tpm</translation>
    </message>
    <message>
        <source>%1 revolution</source>
        <translation>%1 omwentelingen</translation>
    </message>
    <message>
        <source>%1 Nm</source>
        <translation>%1 Nm</translation>
    </message>
    <message>
        <source>%1 km/h</source>
        <translation>%1 km/u</translation>
    </message>
    <message>
        <source>%1 bpm</source>
        <translation>%1 slagen/min</translation>
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
        <translation>%1 dagen</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 minuten</translation>
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
        <translation>Het bestand is geen uitwisselingsbestand: regel %1, kolom %2 bevat XML die in uitwisselingsbestanden nooit voorkomt (entiteiten, of veel te veel attributen, niveaus of naamruimten).</translation>
    </message>
    <message>
        <source>There is no node in the file.</source>
        <translation>Het bestand bevat geen node.</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Het bestand %1 kan niet worden geschreven: %2.</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2.</source>
        <translation>Het bestand %1 kan niet worden gelezen: %2.</translation>
    </message>
    <message>
        <source>The file lists far more nodes than a vehicle can have, the first one too many in line %1, column %2.</source>
        <translation>Het bestand bevat veel meer nodes dan een voertuig kan hebben; de eerste die te veel is, staat op regel %1, kolom %2.</translation>
    </message>
    <message>
        <source>The file is not complete: it ends in line %1, column %2.</source>
        <translation>Het bestand is niet volledig: het eindigt op regel %1, kolom %2.</translation>
    </message>
    <message>
        <source>The file is not XML: line %1, column %2: %3</source>
        <translation>Het bestand is geen XML: regel %1, kolom %2: %3</translation>
    </message>
    <message>
        <source>The file %1 is far too large for an exchange file.</source>
        <translation>Het bestand %1 is veel te groot voor een uitwisselingsbestand.</translation>
    </message>
</context>
<context>
    <name>OverviewForm</name>
    <message>
        <source>Form</source>
        <translation>Overzicht</translation>
    </message>
    <message>
        <source>Node-Id</source>
        <translation>Node-ID</translation>
    </message>
    <message>
        <source>NMT-State</source>
        <translation>NMT-status</translation>
    </message>
    <message>
        <source>DX FSA State</source>
        <translation>DX-FSA-toestand</translation>
    </message>
    <message>
        <source>Device Parameters (fixed)</source>
        <translation>Apparaatparameters (vast)</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Eigenschap</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Waarde</translation>
    </message>
    <message>
        <source>Actual Values</source>
        <translation>Actuele waarden</translation>
    </message>
    <message>
        <source>Scan for devices and read all data from the components</source>
        <translation>Apparaten zoeken en alle gegevens van de componenten lezen</translation>
    </message>
    <message>
        <source>Read all data</source>
        <translation>Alle gegevens lezen</translation>
    </message>
    <message>
        <source>Export all data as XML file to later use.</source>
        <translation>Alle gegevens voor later gebruik exporteren als XML-bestand.</translation>
    </message>
    <message>
        <source>Export </source>
        <translation>Exporteren </translation>
    </message>
    <message>
        <source>Import exported data</source>
        <translation>Geëxporteerde gegevens importeren</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importeren</translation>
    </message>
    <message>
        <source>Generate and save a PDF Report of all  data from all devices</source>
        <translation>PDF-rapport van alle gegevens van alle apparaten maken en opslaan</translation>
    </message>
    <message>
        <source>Save PDF Report</source>
        <translation>PDF-rapport opslaan</translation>
    </message>
    <message>
        <source>Check for Component update</source>
        <translation>Componentupdate zoeken</translation>
    </message>
    <message>
        <source>Draxel Controller/Charger</source>
        <translation>Draxel-controller/lader</translation>
    </message>
    <message>
        <source>Draxel Controller</source>
        <translation>Draxel-controller</translation>
    </message>
    <message>
        <source>Voltage Converter/Charger</source>
        <translation>Spanningsomvormer/lader</translation>
    </message>
    <message>
        <source>Battery Pack</source>
        <translation>Accupack</translation>
    </message>
    <message>
        <source>Motor Control unit</source>
        <translation>Motorcontroller</translation>
    </message>
    <message>
        <source>Load monitoring unit</source>
        <translation>Verbruikersbewaking</translation>
    </message>
    <message>
        <source>HMI control unit/display</source>
        <translation>Bedieningseenheid/display</translation>
    </message>
    <message>
        <source>Security unit</source>
        <translation>Diefstalbeveiligingseenheid</translation>
    </message>
    <message>
        <source>Sensor unit</source>
        <translation>Sensoreenheid</translation>
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
        <translation>Verbruiker</translation>
    </message>
    <message>
        <source>manufacturer-specific device</source>
        <translation>fabrikantspecifiek apparaat</translation>
    </message>
    <message>
        <source> External Device </source>
        <translation> Extern apparaat </translation>
    </message>
    <message>
        <source> VDN </source>
        <translation> VDN </translation>
    </message>
    <message>
        <source>Implemented specification versions</source>
        <translation>Geïmplementeerde specificatieversies</translation>
    </message>
    <message>
        <source>Security Status</source>
        <translation>Status van de diefstalbeveiliging</translation>
    </message>
    <message>
        <source>Battery Pack </source>
        <translation>Accupack </translation>
    </message>
    <message>
        <source> highest temperature</source>
        <translation> hoogste temperatuur</translation>
    </message>
    <message>
        <source> sensor </source>
        <translation> sensor </translation>
    </message>
    <message>
        <source> temperature</source>
        <translation> temperatuur</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>Accustatus</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Onbekend</translation>
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
        <translation> extern apparaat </translation>
    </message>
    <message>
        <source>Draxel FSA state</source>
        <translation>Draxel-FSA-toestand</translation>
    </message>
    <message>
        <source>Device Type</source>
        <translation>Apparaattype</translation>
    </message>
    <message>
        <source>Shows device type information</source>
        <translation>Toont informatie over het apparaattype</translation>
    </message>
    <message>
        <source>Device information</source>
        <translation>Apparaatinformatie</translation>
    </message>
    <message>
        <source>Error register</source>
        <translation>Foutregister</translation>
    </message>
    <message>
        <source>Shows detailed error information</source>
        <translation>Toont gedetailleerde foutinformatie</translation>
    </message>
    <message>
        <source>Error field</source>
        <translation>Foutgeheugen</translation>
    </message>
    <message>
        <source>Shows last occured errors</source>
        <translation>Toont de laatst opgetreden fouten</translation>
    </message>
    <message>
        <source>Error information</source>
        <translation>Foutinformatie</translation>
    </message>
    <message>
        <source>Shows the implemented specifications</source>
        <translation>Toont de geïmplementeerde specificaties</translation>
    </message>
    <message>
        <source>Implemented specification</source>
        <translation>Geïmplementeerde specificatie</translation>
    </message>
    <message>
        <source>Shows implemented security status</source>
        <translation>Toont de status van de diefstalbeveiliging</translation>
    </message>
    <message>
        <source>Draxel Tool XML files (*.dxxml)</source>
        <translation>XML-bestanden van Draxel Tool (*.dxxml)</translation>
    </message>
    <message>
        <source>No connection to Draxel. Please connect to Draxel and retry.</source>
        <translation>Geen verbinding met Draxel. Maak verbinding met Draxel en probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Export Draxel LEV Network information</source>
        <translation>Informatie van het Draxel-LEV-netwerk exporteren</translation>
    </message>
    <message>
        <source>Import Draxel LEV Network information</source>
        <translation>Informatie van het Draxel-LEV-netwerk importeren</translation>
    </message>
    <message>
        <source>No component selected.</source>
        <translation>Geen component geselecteerd.</translation>
    </message>
    <message>
        <source>No devices found. Read all data from Draxel or import data from XML file.</source>
        <translation>Geen apparaten gevonden. Lees alle gegevens van Draxel of importeer gegevens uit een XML-bestand.</translation>
    </message>
    <message>
        <source>Characters not shown: %1</source>
        <translation>Niet getoonde tekens: %1</translation>
    </message>
    <message>
        <source>Save text</source>
        <translation>Tekst opslaan</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Het bestand %1 kan niet worden geschreven: %2.</translation>
    </message>
    <message>
        <source>Save text...</source>
        <translation>Tekst opslaan...</translation>
    </message>
</context>
<context>
    <name>pdfWriter</name>
    <message>
        <source>Draxel FSA state</source>
        <translation>Draxel-FSA-toestand</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>Accustatus</translation>
    </message>
    <message>
        <source>printing broke off, perhaps because the disk is full</source>
        <translation>het afdrukken is afgebroken, misschien omdat de schijf vol is</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Het bestand %1 kan niet worden geschreven: %2.</translation>
    </message>
</context>
</TS>
