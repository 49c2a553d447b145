<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl_NL" sourcelanguage="en">
<context>
    <name>BusAddress</name>
    <message>
        <source>&quot;%1&quot; names no bus. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>“%1” is geen bus. Schrijf hem als PLUGIN:INTERFACE, bijvoorbeeld socketcan:can0.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; names no back end before the colon. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>“%1” noemt geen stuurprogramma vóór de dubbele punt. Schrijf de bus als PLUGIN:INTERFACE, bijvoorbeeld socketcan:can0.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; names no interface after the colon. Write it as PLUGIN:INTERFACE, for example socketcan:can0.</source>
        <translation>“%1” noemt geen interface na de dubbele punt. Schrijf de bus als PLUGIN:INTERFACE, bijvoorbeeld socketcan:can0.</translation>
    </message>
</context>
<context>
    <name>BusConnection</name>
    <message>
        <source>The attempt to connect was ended by another one.</source>
        <translation>De verbindingspoging is door een andere beëindigd.</translation>
    </message>
    <message>
        <source>The bus %1 cannot be used. %2</source>
        <translation>De bus %1 kan niet worden gebruikt. %2</translation>
    </message>
</context>
<context>
    <name>BusOpener</name>
    <message>
        <source>The interface %1 does not take the bit rate %2. Setting it needs the library libsocketcan and the right to configure interfaces. By hand: run &quot;%3&quot; and &quot;%4&quot;, then connect without a bit rate.</source>
        <translation>De interface %1 neemt de bitsnelheid %2 niet aan. Het instellen vereist de bibliotheek libsocketcan en het recht om interfaces te configureren. Handmatig: voer “%3” en “%4” uit en maak daarna verbinding zonder bitsnelheid.</translation>
    </message>
</context>
<context>
    <name>BusReport</name>
    <message>
        <source>starting</source>
        <translation>start op</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Stopped</translation>
    </message>
    <message>
        <source>Operational</source>
        <translation>Operational</translation>
    </message>
    <message>
        <source>Pre-operational</source>
        <translation>Pre-operational</translation>
    </message>
    <message>
        <source>Node 1, the bus controller, was not heard. Without it nothing is read. Is the vehicle switched on, and does node 1 send a heartbeat?</source>
        <translation>Node 1, de buscontroller, is niet gehoord. Zonder deze node wordt niets gelezen. Staat het voertuig aan, en verzendt node 1 een heartbeat?</translation>
    </message>
    <message>
        <source>Stopped, so that they answer no SDO: node %1. The read ends at the first of them; restart the vehicle, or start these nodes by NMT.</source>
        <translation>In toestand Stopped en dus zonder antwoord op SDO: node %1. Het lezen eindigt bij de eerste daarvan; start het voertuig opnieuw, of start deze nodes via NMT.</translation>
    </message>
    <message>
        <source>Heard, %1: node %2</source>
        <translation>Gehoord, %1: node %2</translation>
    </message>
    <message>
        <source>Started again (boot-up message): node %1</source>
        <translation>Opnieuw gestart (boot-up-bericht): node %1</translation>
    </message>
    <message>
        <source>Now %1: node %2</source>
        <translation>Nu %1: node %2</translation>
    </message>
    <message>
        <source>Not heard any more: node %1</source>
        <translation>Niet meer gehoord: node %1</translation>
    </message>
    <message>
        <source>Connected to %1 again.</source>
        <translation>Opnieuw verbonden met %1.</translation>
    </message>
    <message>
        <source>The connection to %1 is lost. %2 It is made again as soon as the interface is back.</source>
        <translation>De verbinding met %1 is verbroken. %2 Ze wordt hersteld zodra de interface terug is.</translation>
    </message>
    <message>
        <source>Disconnected from %1.</source>
        <translation>Verbinding met %1 verbroken.</translation>
    </message>
    <message>
        <source>Read started: looking for nodes.</source>
        <translation>Lezen begonnen: nodes worden gezocht.</translation>
    </message>
    <message>
        <source>The CAN interface %1 works without errors again.</source>
        <translation>De CAN-interface %1 werkt weer zonder fouten.</translation>
    </message>
    <message>
        <source>The CAN interface %1 has dropped received frames (overrun).</source>
        <translation>De CAN-interface %1 heeft ontvangen frames verloren (overloop).</translation>
    </message>
    <message>
        <source>Started, but no heartbeat has followed (is object 1017h zero?): node %1</source>
        <translation>Gestart, maar zonder heartbeat daarna (is object 1017h nul?): node %1</translation>
    </message>
</context>
<context>
    <name>BusSettings</name>
    <message>
        <source>&quot;%1&quot; is no bit rate. Give it in bit/s, for example 250000.</source>
        <translation>“%1” is geen bitsnelheid. Geef deze op in bit/s, bijvoorbeeld 250000.</translation>
    </message>
</context>
<context>
    <name>BusWords</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 tot %2</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>Verbinden met %1 ...</translation>
    </message>
    <message>
        <source>Connected to %1 at %2 kbit/s.</source>
        <translation>Verbonden met %1 op %2 kbit/s.</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Verbonden met %1.</translation>
    </message>
    <message>
        <source>The bus %1 cannot be opened: %2</source>
        <translation>De bus %1 kan niet worden geopend: %2</translation>
    </message>
    <message>
        <source>The interface %1 is there.</source>
        <translation>De interface %1 is er.</translation>
    </message>
    <message>
        <source>%1 is down: run &quot;%2&quot;.</source>
        <translation>%1 staat uit: voer “%2” uit.</translation>
    </message>
    <message>
        <source>There is no interface %1. Check that the adapter is plugged in.</source>
        <translation>Er is geen interface %1. Controleer of de adapter is aangesloten.</translation>
    </message>
    <message>
        <source>The interface %1 was removed and came back.</source>
        <translation>De interface %1 is verwijderd en weer teruggekomen.</translation>
    </message>
    <message>
        <source>The CAN interface %1 counts many bus errors.</source>
        <translation>De CAN-interface %1 telt veel busfouten.</translation>
    </message>
    <message>
        <source>The CAN interface %1 is error-passive: nobody acknowledges its frames, or they arrive broken. Check bit rate, wiring and termination.</source>
        <translation>De CAN-interface %1 is error-passive: niemand bevestigt haar frames, of ze komen beschadigd aan. Controleer bitsnelheid, bekabeling en afsluitweerstanden.</translation>
    </message>
    <message>
        <source>The CAN interface %1 is bus-off: it has left the bus after too many errors. Check bit rate, wiring and termination, then restart the interface, or disconnect and connect.</source>
        <translation>De CAN-interface %1 is bus-off: ze heeft de bus verlaten na te veel fouten. Controleer bitsnelheid, bekabeling en afsluitweerstanden, start daarna de interface opnieuw, of verbreek de verbinding en maak haar opnieuw.</translation>
    </message>
</context>
<context>
    <name>CanOpen</name>
    <message>
        <source>The toggle bit did not alternate</source>
        <translation>De toggle-bit wisselde niet</translation>
    </message>
    <message>
        <source>The SDO protocol timed out</source>
        <translation>Time-out van het SDO-protocol</translation>
    </message>
    <message>
        <source>The command specifier is not valid or unknown</source>
        <translation>De commandocode is ongeldig of onbekend</translation>
    </message>
    <message>
        <source>The block size is not valid</source>
        <translation>De blokgrootte is ongeldig</translation>
    </message>
    <message>
        <source>The sequence number is not valid</source>
        <translation>Het volgnummer is ongeldig</translation>
    </message>
    <message>
        <source>The checksum is wrong</source>
        <translation>De controlesom is onjuist</translation>
    </message>
    <message>
        <source>The device is out of memory</source>
        <translation>Het apparaat heeft geen vrij geheugen meer</translation>
    </message>
    <message>
        <source>The access to the object is not supported</source>
        <translation>De toegang tot het object wordt niet ondersteund</translation>
    </message>
    <message>
        <source>The object can only be written</source>
        <translation>Het object kan alleen worden geschreven</translation>
    </message>
    <message>
        <source>The object can only be read</source>
        <translation>Het object kan alleen worden gelezen</translation>
    </message>
    <message>
        <source>The object does not exist</source>
        <translation>Het object bestaat niet</translation>
    </message>
    <message>
        <source>The object cannot be mapped to a PDO</source>
        <translation>Het object kan niet in een PDO worden opgenomen</translation>
    </message>
    <message>
        <source>The mapped objects exceed the length of a PDO</source>
        <translation>De opgenomen objecten zijn langer dan een PDO</translation>
    </message>
    <message>
        <source>The parameter is incompatible</source>
        <translation>De parameter is niet compatibel</translation>
    </message>
    <message>
        <source>The device has an internal incompatibility</source>
        <translation>Het apparaat heeft een interne incompatibiliteit</translation>
    </message>
    <message>
        <source>The access failed because of a hardware error</source>
        <translation>De toegang is mislukt door een hardwarefout</translation>
    </message>
    <message>
        <source>The length does not match the data type</source>
        <translation>De lengte past niet bij het gegevenstype</translation>
    </message>
    <message>
        <source>There are more bytes than the data type has</source>
        <translation>Er zijn meer bytes dan het gegevenstype heeft</translation>
    </message>
    <message>
        <source>There are fewer bytes than the data type has</source>
        <translation>Er zijn minder bytes dan het gegevenstype heeft</translation>
    </message>
    <message>
        <source>The sub-index does not exist</source>
        <translation>De subindex bestaat niet</translation>
    </message>
    <message>
        <source>The value is not valid</source>
        <translation>De waarde is ongeldig</translation>
    </message>
    <message>
        <source>The value is too high</source>
        <translation>De waarde is te hoog</translation>
    </message>
    <message>
        <source>The value is too low</source>
        <translation>De waarde is te laag</translation>
    </message>
    <message>
        <source>The maximum is less than the minimum</source>
        <translation>Het maximum is kleiner dan het minimum</translation>
    </message>
    <message>
        <source>The resource is not available</source>
        <translation>De bron is niet beschikbaar</translation>
    </message>
    <message>
        <source>General error</source>
        <translation>Algemene fout</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored</source>
        <translation>De gegevens kunnen niet worden overgedragen of opgeslagen</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored because of local control</source>
        <translation>De gegevens kunnen wegens lokale besturing niet worden overgedragen of opgeslagen</translation>
    </message>
    <message>
        <source>The data cannot be transferred or stored in the present state of the device</source>
        <translation>De gegevens kunnen in de huidige toestand van het apparaat niet worden overgedragen of opgeslagen</translation>
    </message>
    <message>
        <source>There is no object dictionary</source>
        <translation>Er is geen object dictionary</translation>
    </message>
    <message>
        <source>No data is available</source>
        <translation>Er zijn geen gegevens beschikbaar</translation>
    </message>
    <message>
        <source>Abort code %1</source>
        <translation>Afbreekcode %1</translation>
    </message>
</context>
<context>
    <name>CanOpen::CanPort</name>
    <message>
        <source>The CAN interface did not connect within %1 seconds.</source>
        <translation>De CAN-interface heeft binnen %1 seconden geen verbinding gemaakt.</translation>
    </message>
    <message>
        <source>The CAN interface was disconnected.</source>
        <translation>De verbinding met de CAN-interface is verbroken.</translation>
    </message>
    <message>
        <source>The CAN interface failed: %1.</source>
        <translation>De CAN-interface is uitgevallen: %1.</translation>
    </message>
    <message>
        <source>The CAN interface does not send any more: %1.</source>
        <translation>De CAN-interface verzendt niet meer: %1.</translation>
    </message>
</context>
<context>
    <name>Checkup</name>
    <message>
        <source>There are no rules.</source>
        <translation>Er zijn geen regels.</translation>
    </message>
    <message>
        <source>The rules take too long; not all of them were applied.</source>
        <translation>De regels duren te lang; niet alle zijn toegepast.</translation>
    </message>
    <message>
        <source>There are more findings than are kept.</source>
        <translation>Er zijn meer bevindingen dan er worden bewaard.</translation>
    </message>
</context>
<context>
    <name>ComponentGaps</name>
    <message>
        <source>What the device answers is no number.</source>
        <translation>Wat het apparaat antwoordt, is geen getal.</translation>
    </message>
    <message>
        <source>The file does not tell how the device behaves on the bus.</source>
        <translation>Het bestand zegt niet hoe het apparaat zich op de bus gedraagt.</translation>
    </message>
    <message>
        <source>A quick snapshot does not ask for everything.</source>
        <translation>Een snelle momentopname vraagt niet naar alles.</translation>
    </message>
    <message>
        <source>The file does not hold everything.</source>
        <translation>Het bestand bevat niet alles.</translation>
    </message>
    <message>
        <source>The snapshot does not hold everything.</source>
        <translation>De momentopname bevat niet alles.</translation>
    </message>
    <message>
        <source>%1 and others, %2 objects in all</source>
        <translation>%1 en andere, in totaal %2 objecten</translation>
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
        <translation>Verbinding verbreken</translation>
    </message>
    <message>
        <source>Open this bus</source>
        <translation>Deze bus openen</translation>
    </message>
    <message>
        <source>Close the bus</source>
        <translation>De bus sluiten</translation>
    </message>
    <message>
        <source>&amp;Back end:</source>
        <translation>&amp;Stuurprogramma:</translation>
    </message>
    <message>
        <source>The kind of CAN adapter</source>
        <translation>Het soort CAN-adapter</translation>
    </message>
    <message>
        <source>&amp;Interface:</source>
        <translation>&amp;Interface:</translation>
    </message>
    <message>
        <source>One of the adapters found; others can be typed in</source>
        <translation>Een van de gevonden adapters; andere kunt u intypen</translation>
    </message>
    <message>
        <source>none found: type a name</source>
        <translation>geen gevonden: typ een naam</translation>
    </message>
    <message>
        <source>Look for adapters again</source>
        <translation>Opnieuw naar adapters zoeken</translation>
    </message>
    <message>
        <source>Bit &amp;rate:</source>
        <translation>Bits&amp;nelheid:</translation>
    </message>
    <message>
        <source>Set on the adapter before connecting</source>
        <translation>Wordt vóór het verbinden op de adapter ingesteld</translation>
    </message>
    <message>
        <source>as configured</source>
        <translation>ongewijzigd</translation>
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
        <translation>Kijkt in de CANopen-bus van lichte elektrische voertuigen.</translation>
    </message>
    <message>
        <source>Choose this bus, for example socketcan:can0 or simulated:pedelec.</source>
        <translation>Deze bus kiezen, bijvoorbeeld socketcan:can0 of simulated:pedelec.</translation>
    </message>
    <message>
        <source>Set this bit rate (bit/s) when connecting.</source>
        <translation>Deze bitsnelheid (bit/s) bij het verbinden instellen.</translation>
    </message>
    <message>
        <source>Connect to the bus at once.</source>
        <translation>Meteen met de bus verbinden.</translation>
    </message>
    <message>
        <source>The language, for example de.</source>
        <translation>De taal, bijvoorbeeld nl.</translation>
    </message>
    <message>
        <source>Load the plug-ins of this folder.</source>
        <translation>De plug-ins van deze map laden.</translation>
    </message>
    <message>
        <source>--bitrate needs --bus.</source>
        <translation>--bitrate vereist --bus.</translation>
    </message>
    <message>
        <source>Write the debug lines of plug-ins to the terminal.</source>
        <translation>De debugregels van plug-ins naar de terminal schrijven.</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>Toont deze hulp.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Toont de versie.</translation>
    </message>
    <message>
        <source>Show the values of this exchange file.</source>
        <translation>Toont de waarden van dit uitwisselingsbestand.</translation>
    </message>
    <message>
        <source>What is &quot;%1&quot; for? One file can be shown.</source>
        <translation>Waar is “%1” voor? Er kan één bestand worden getoond.</translation>
    </message>
    <message>
        <source>There is no language &quot;%1&quot;. There are: %2.</source>
        <translation>De taal “%1” is er niet. Er zijn: %2.</translation>
    </message>
</context>
<context>
    <name>ExpressionParser</name>
    <message>
        <source>&quot;%1&quot; was not expected</source>
        <translation>‘%1’ wordt hier niet verwacht</translation>
    </message>
    <message>
        <source>A formula has at most %1 characters</source>
        <translation>Een formule heeft hoogstens %1 tekens</translation>
    </message>
    <message>
        <source>%1, at character %2</source>
        <translation>%1, bij teken %2</translation>
    </message>
    <message>
        <source>There are too many parentheses</source>
        <translation>Er zijn te veel haakjes</translation>
    </message>
    <message>
        <source>Something is missing</source>
        <translation>Er ontbreekt iets</translation>
    </message>
    <message>
        <source>A closing parenthesis is missing</source>
        <translation>Er ontbreekt een sluithaakje</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number</source>
        <translation>‘%1’ is geen getal</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no object; one is written like 6040h or 6040h.1</source>
        <translation>‘%1’ is geen object; dat schrijft men als 6040h of 6040h.1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no sub-index; it is a number up to 255, or the name of a loop</source>
        <translation>‘%1’ is geen subindex; dat is een getal tot 255 of de naam van een lus</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not known</source>
        <translation>‘%1’ is onbekend</translation>
    </message>
    <message>
        <source>There is no function &quot;%1&quot;</source>
        <translation>Er is geen functie ‘%1’</translation>
    </message>
    <message>
        <source>An object alone is wanted, of which all sub-indices are taken</source>
        <translation>Er wordt alleen een object verwacht, waarvan alle subindexen worden genomen</translation>
    </message>
    <message>
        <source>These are too few or too many arguments</source>
        <translation>Dit zijn te weinig of te veel argumenten</translation>
    </message>
</context>
<context>
    <name>FailedObject</name>
    <message>
        <source>No answer</source>
        <translation>Geen antwoord</translation>
    </message>
    <message>
        <source>The request could not be sent</source>
        <translation>Het verzoek kon niet worden verzonden</translation>
    </message>
    <message>
        <source>Node %1, object %2 sub-index %3: %4</source>
        <translation>Node %1, object %2 subindex %3: %4</translation>
    </message>
    <message>
        <source>Another client was using the node</source>
        <translation>Een andere client gebruikte de node</translation>
    </message>
    <message>
        <source>The answers could not be told from late or foreign ones</source>
        <translation>De antwoorden waren niet te onderscheiden van late of vreemde</translation>
    </message>
</context>
<context>
    <name>HelpBoxes</name>
    <message>
        <source>About Draxel</source>
        <translation>Over Draxel</translation>
    </message>
    <message>
        <source>Draxel %1</source>
        <translation>Draxel %1</translation>
    </message>
    <message>
        <source>Looks into the CANopen bus of light electric vehicles.</source>
        <translation>Kijkt in de CANopen-bus van lichte elektrische voertuigen.</translation>
    </message>
    <message>
        <source>Licence: MIT. You may use, change and pass it on freely; it comes without warranty.</source>
        <translation>Licentie: MIT. U mag het programma vrij gebruiken, wijzigen en doorgeven; het wordt zonder garantie geleverd.</translation>
    </message>
    <message>
        <source>Qt version: %1</source>
        <translation>Qt-versie: %1</translation>
    </message>
    <message>
        <source>Plug-ins: %1</source>
        <translation>Plug-ins: %1</translation>
    </message>
    <message>
        <source>Key list</source>
        <translation>Sneltoetsen</translation>
    </message>
</context>
<context>
    <name>HostMenus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Bestand</translation>
    </message>
    <message>
        <source>&amp;Open saved file...</source>
        <translation>Opgeslagen bestand &amp;openen...</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>&amp;Exporteren...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Afsluiten</translation>
    </message>
    <message>
        <source>B&amp;us</source>
        <translation>B&amp;us</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>Verbinding ver&amp;breken</translation>
    </message>
    <message>
        <source>Re&amp;fresh interfaces</source>
        <translation>&amp;Interfaces opnieuw zoeken</translation>
    </message>
    <message>
        <source>&amp;Read all data</source>
        <translation>&amp;Alle gegevens lezen</translation>
    </message>
    <message>
        <source>Ca&amp;ncel read</source>
        <translation>Lezen a&amp;fbreken</translation>
    </message>
    <message>
        <source>&amp;Patience with slow nodes...</source>
        <translation>&amp;Geduld met trage nodes...</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>Beel&amp;d</translation>
    </message>
    <message>
        <source>&amp;Reset layout</source>
        <translation>&amp;Indeling herstellen</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Taal</translation>
    </message>
    <message>
        <source>&amp;System</source>
        <translation>&amp;Systeem</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>&amp;Key list</source>
        <translation>&amp;Sneltoetsen</translation>
    </message>
    <message>
        <source>&amp;About Draxel</source>
        <translation>&amp;Over Draxel</translation>
    </message>
    <message>
        <source>About &amp;Qt</source>
        <translation>Over &amp;Qt</translation>
    </message>
    <message>
        <source>%1 (no font for it is installed)</source>
        <translation>%1 (geen lettertype ervoor geïnstalleerd)</translation>
    </message>
    <message>
        <source>Open re&amp;cent file</source>
        <translation>Re&amp;cent bestand openen</translation>
    </message>
    <message>
        <source>Save &amp;PDF report</source>
        <translation>&amp;PDF-rapport opslaan</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>%1 has no window.</source>
        <translation>%1 heeft geen venster.</translation>
    </message>
    <message>
        <source>No plug-in is loaded. Put one into the folder &quot;plugins&quot; beside the program and start it again.</source>
        <translation>Er is geen plug-in geladen. Zet er een in de map “plugins” naast het programma en start het opnieuw.</translation>
    </message>
    <message>
        <source>Which interface is meant? Choose one, or type its name, and connect again.</source>
        <translation>Welke interface wordt bedoeld? Kies er een, of typ de naam, en maak opnieuw verbinding.</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldingen</translation>
    </message>
    <message>
        <source>&amp;Messages</source>
        <translation>&amp;Meldingen</translation>
    </message>
    <message>
        <source>The settings cannot be kept: the file %1 cannot be written.</source>
        <translation>De instellingen kunnen niet worden bewaard: het bestand %1 kan niet worden geschreven.</translation>
    </message>
    <message>
        <source>&amp;Read anyway</source>
        <translation>&amp;Toch lezen</translation>
    </message>
    <message>
        <source>%1 cannot be opened: no plug-in that shows it is loaded.</source>
        <translation>%1 kan niet worden geopend: er is geen plug-in geladen die het bestand toont.</translation>
    </message>
</context>
<context>
    <name>MessageLog</name>
    <message>
        <source>Time</source>
        <translation>Tijd</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Melding</translation>
    </message>
    <message>
        <source>%1 (%2 times)</source>
        <translation>%1 (%2 keer)</translation>
    </message>
</context>
<context>
    <name>MessagePanel</name>
    <message>
        <source>Messages</source>
        <translation>Meldingen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopiëren</translation>
    </message>
    <message>
        <source>Copy the selected messages, or all of them</source>
        <translation>De geselecteerde of alle meldingen kopiëren</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Wissen</translation>
    </message>
    <message>
        <source>Remove all messages</source>
        <translation>Alle meldingen verwijderen</translation>
    </message>
</context>
<context>
    <name>ObjectChange</name>
    <message>
        <source>%1: %2 was %3, is %4: the software was changed.</source>
        <translation>%1: %2 was %3, is %4: de software is gewijzigd.</translation>
    </message>
    <message>
        <source>%1: %2 fell from %3 to %4: it was reset, or the device repaired.</source>
        <translation>%1: %2 daalde van %3 naar %4: het is gereset, of het apparaat is gerepareerd.</translation>
    </message>
    <message>
        <source>%1: %2 rose from %3 to %4.</source>
        <translation>%1: %2 steeg van %3 naar %4.</translation>
    </message>
    <message>
        <source>%1: %2 was %3, is %4.</source>
        <translation>%1: %2 was %3, is nu %4.</translation>
    </message>
    <message>
        <source>%1: %2 could not be read this time. %3</source>
        <translation>%1: %2 kon deze keer niet worden gelezen. %3</translation>
    </message>
    <message>
        <source>%1: %2 could be read this time. Before: %3</source>
        <translation>%1: %2 kon deze keer worden gelezen. Eerder: %3</translation>
    </message>
    <message>
        <source>%1: %2 is new.</source>
        <translation>%1: %2 is nieuw.</translation>
    </message>
    <message>
        <source>%1: %2 is not there any more.</source>
        <translation>%1: %2 is er niet meer.</translation>
    </message>
</context>
<context>
    <name>PatienceDialog</name>
    <message>
        <source>Patience with slow nodes</source>
        <translation>Geduld met trage nodes</translation>
    </message>
    <message>
        <source>How long to wait for a node&apos;s answer before it counts as silent. Every repeat waits twice as long as the try before it.</source>
        <translation>Hoe lang op het antwoord van een node wordt gewacht voordat die als stil geldt. Elke herhaling wacht twee keer zo lang als de poging ervoor.</translation>
    </message>
    <message>
        <source>&amp;Time-out:</source>
        <translation>&amp;Wachttijd:</translation>
    </message>
    <message>
        <source>&amp;Repeats:</source>
        <translation>&amp;Herhalingen:</translation>
    </message>
    <message>
        <source>Nodes with a patience of their &amp;own:</source>
        <translation>Nodes met &amp;eigen geduld:</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Node</translation>
    </message>
    <message>
        <source>Time-out</source>
        <translation>Wachttijd</translation>
    </message>
    <message>
        <source>Repeats</source>
        <translation>Herhalingen</translation>
    </message>
    <message>
        <source>&amp;Add node</source>
        <translation>Node &amp;toevoegen</translation>
    </message>
    <message>
        <source>Re&amp;move node</source>
        <translation>Node &amp;verwijderen</translation>
    </message>
    <message>
        <source>&amp;Defaults</source>
        <translation>&amp;Standaardwaarden</translation>
    </message>
</context>
<context>
    <name>PluginLibrary</name>
    <message>
        <source>The file %1 is no plug-in: %2</source>
        <translation>Het bestand %1 is geen plug-in: %2</translation>
    </message>
    <message>
        <source>The library %1 is a plug-in for another program.</source>
        <translation>De bibliotheek %1 is een plug-in voor een ander programma.</translation>
    </message>
    <message>
        <source>The plug-in %1 cannot be loaded: %2</source>
        <translation>De plug-in %1 kan niet worden geladen: %2</translation>
    </message>
    <message>
        <source>The plug-in %1 was made for another version of this program (it does not know the interface %2).</source>
        <translation>De plug-in %1 is voor een andere versie van dit programma gemaakt (hij kent de interface %2 niet).</translation>
    </message>
</context>
<context>
    <name>PluginSession</name>
    <message>
        <source>There is no plug-in in the folder %1.</source>
        <translation>Er is geen plug-in in de map %1.</translation>
    </message>
</context>
<context>
    <name>ReadWords</name>
    <message>
        <source>Read finished. Nodes: %1, %2.</source>
        <translation>Lezen voltooid. Nodes: %1, %2.</translation>
    </message>
    <message>
        <source>values: %1, objects not there: %2, failed: %3</source>
        <translation>waarden: %1, ontbrekende objecten: %2, mislukt: %3</translation>
    </message>
    <message>
        <source>Nothing was read, because the bus was lost: %1</source>
        <translation>Er is niets gelezen, omdat de bus is weggevallen: %1</translation>
    </message>
    <message>
        <source>Nothing was read, because you disconnected.</source>
        <translation>Er is niets gelezen, omdat u de verbinding hebt verbroken.</translation>
    </message>
    <message>
        <source>The read was cancelled by the user.</source>
        <translation>Het lezen is door de gebruiker afgebroken.</translation>
    </message>
    <message>
        <source>Nothing was read, because node 1, the bus controller, was not heard. Is the vehicle switched on, and does node 1 send a heartbeat?</source>
        <translation>Er is niets gelezen, omdat node 1, de buscontroller, niet is gehoord. Staat het voertuig aan, en verzendt node 1 een heartbeat?</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because the bus was lost: %5 Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat de bus is weggevallen: %5 Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because you disconnected. Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat u de verbinding hebt verbroken. Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>The read was cancelled by the user at node %1, object %2 sub-index %3. Values read until then: %4.</source>
        <translation>Het lezen is door de gebruiker afgebroken bij node %1, object %2 subindex %3. Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because the request could not be sent: the bus is overloaded, or nobody acknowledges. Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat het verzoek niet kon worden verzonden: de bus is overbelast, of niemand bevestigt. Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because the node is in the state Stopped and answers no SDO. Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat de node in de toestand Stopped is en geen SDO beantwoordt. Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because the node keeps restarting. Look at its supply. Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat de node steeds opnieuw start. Controleer zijn voeding. Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because it did not answer. Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat deze niet antwoordde. Tot dan gelezen waarden: %4.</translation>
    </message>
    <message>
        <source>Another client is reading node %1. Objects of it may take long or fail; end the other program, or take its adapter off the bus.</source>
        <translation>Een andere client leest node %1. Objecten ervan kunnen lang duren of mislukken; sluit het andere programma, of haal zijn adapter van de bus.</translation>
    </message>
    <message>
        <source>Reading node %1 (%2 of %3), object %4 ...</source>
        <translation>Node %1 (%2 van %3), object %4 lezen ...</translation>
    </message>
    <message>
        <source>%1 s left</source>
        <translation>nog %1 s</translation>
    </message>
    <message>
        <source>%1 min left</source>
        <translation>nog %1 min</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 en nog %2</translation>
    </message>
    <message>
        <source>Not read from node %1: %2. %3.</source>
        <translation>Niet gelezen van node %1: %2. %3.</translation>
    </message>
    <message>
        <source>The bus was full while nodes were looked for, so nodes may be missing. Find out who sends so much, and read again.</source>
        <translation>De bus was vol terwijl nodes werden gezocht, dus er kunnen nodes ontbreken. Zoek uit wie zoveel verzendt en lees opnieuw.</translation>
    </message>
    <message>
        <source>Nothing was read, because node 1, the bus controller, was not heard: the bus is full, and the node&apos;s heartbeat may find no room on it. Find out who sends so much, and read again.</source>
        <translation>Er is niets gelezen, omdat node 1, de buscontroller, niet is gehoord: de bus is vol en de heartbeat van de node vindt er mogelijk geen plaats op. Zoek uit wie zoveel verzendt en lees opnieuw.</translation>
    </message>
    <message>
        <source>The read stopped at node %1, object %2 sub-index %3, because the bus is full, and the node&apos;s answer may find no room on it. Find out who sends so much, and read again. Values read until then: %4.</source>
        <translation>Het lezen stopte bij node %1, object %2 subindex %3, omdat de bus vol is en het antwoord van de node er mogelijk geen plaats op vindt. Zoek uit wie zoveel verzendt en lees opnieuw. Tot dan gelezen waarden: %4.</translation>
    </message>
</context>
<context>
    <name>ReportFiles</name>
    <message>
        <source>No new report was written over it.</source>
        <translation>Er is geen nieuw rapport overheen geschreven.</translation>
    </message>
    <message>
        <source>No report was written to %1.</source>
        <translation>Er is geen rapport naar %1 geschreven.</translation>
    </message>
    <message>
        <source>Report saved: %1</source>
        <translation>Rapport opgeslagen: %1</translation>
    </message>
    <message>
        <source>Report saved: %1. The earlier one is kept as &quot;%2&quot;.</source>
        <translation>Rapport opgeslagen: %1. Het vorige is bewaard als “%2”.</translation>
    </message>
    <message>
        <source>The earlier report could not be kept: %1 cannot be written (%2).</source>
        <translation>Het vorige rapport kon niet worden bewaard: %1 kan niet worden geschreven (%2).</translation>
    </message>
</context>
<context>
    <name>RuleReading</name>
    <message>
        <source>These are no rules.</source>
        <translation>Dit zijn geen regels.</translation>
    </message>
    <message>
        <source>These rules are for a newer program.</source>
        <translation>Deze regels zijn voor een nieuwer programma.</translation>
    </message>
    <message>
        <source>%1 (rule &quot;%2&quot;)</source>
        <translation>%1 (regel ‘%2’)</translation>
    </message>
    <message>
        <source>A table has at most %1 words.</source>
        <translation>Een tabel heeft hoogstens %1 woorden.</translation>
    </message>
    <message>
        <source>Noise cannot be negative.</source>
        <translation>Ruis kan niet negatief zijn.</translation>
    </message>
    <message>
        <source>This is lower than the first one.</source>
        <translation>Dit is lager dan de eerste.</translation>
    </message>
    <message>
        <source>A number, or one like &quot;2310h&quot;, is wanted.</source>
        <translation>Er wordt een getal of iets als &quot;2310h&quot; verwacht.</translation>
    </message>
    <message>
        <source>One of these words is wanted: %1.</source>
        <translation>Een van deze woorden wordt verwacht: %1.</translation>
    </message>
    <message>
        <source>A name of small letters, digits and - is wanted.</source>
        <translation>Er wordt een naam van kleine letters, cijfers en - verwacht.</translation>
    </message>
    <message>
        <source>A rule has at most two loops.</source>
        <translation>Een regel heeft hoogstens twee lussen.</translation>
    </message>
    <message>
        <source>A loop runs from a lower to a higher number, %1 at most.</source>
        <translation>Een lus loopt van een lager naar een hoger getal, hoogstens %1.</translation>
    </message>
    <message>
        <source>A loop is written &quot;s in 6040h&quot;, &quot;b in 0 to 15&quot; or &quot;p in 6165h to 6174h&quot;.</source>
        <translation>Een lus schrijft men als &quot;s in 6040h&quot;, &quot;b in 0 to 15&quot; of &quot;p in 6165h to 6174h&quot;.</translation>
    </message>
    <message>
        <source>A severity is missing.</source>
        <translation>De ernst ontbreekt.</translation>
    </message>
    <message>
        <source>1 to %1 cases are wanted.</source>
        <translation>Er worden 1 tot %1 gevallen verwacht.</translation>
    </message>
    <message>
        <source>The sentence that says what was found is missing.</source>
        <translation>De zin die zegt wat er is gevonden, ontbreekt.</translation>
    </message>
    <message>
        <source>The condition is missing.</source>
        <translation>De voorwaarde ontbreekt.</translation>
    </message>
    <message>
        <source>A text is no number</source>
        <translation>Een tekst is geen getal</translation>
    </message>
    <message>
        <source>The English text, &quot;en&quot;, is missing.</source>
        <translation>De Engelse tekst, &quot;en&quot;, ontbreekt.</translation>
    </message>
</context>
<context>
    <name>RuleSet</name>
    <message>
        <source>There is no folder %1.</source>
        <translation>Er is geen map %1.</translation>
    </message>
    <message>
        <source>The folder %1 has more than %2 files; the others are left out.</source>
        <translation>De map %1 heeft meer dan %2 bestanden; de andere worden weggelaten.</translation>
    </message>
    <message>
        <source>%1 could not be read: %2</source>
        <translation>%1 kon niet worden gelezen: %2</translation>
    </message>
    <message>
        <source>The file is larger than %1 bytes.</source>
        <translation>Het bestand is groter dan %1 bytes.</translation>
    </message>
    <message>
        <source>%1: There are more than %2 rules; this file&apos;s others are left out.</source>
        <translation>%1: er zijn meer dan %2 regels; de andere van dit bestand worden weggelaten.</translation>
    </message>
</context>
<context>
    <name>ShownVehicle</name>
    <message>
        <source>Values from a file, not of now.</source>
        <translation>Waarden uit een bestand, niet van nu.</translation>
    </message>
    <message>
        <source>Values from a file, not of now: it was saved on %1.</source>
        <translation>Waarden uit een bestand, niet van nu: het is opgeslagen op %1.</translation>
    </message>
    <message>
        <source>Vehicle without a serial number</source>
        <translation>Voertuig zonder serienummer</translation>
    </message>
    <message>
        <source>Vehicle %1</source>
        <translation>Voertuig %1</translation>
    </message>
    <message>
        <source>%1, is being read</source>
        <translation>%1, wordt gelezen</translation>
    </message>
    <message>
        <source>%1, read on %2</source>
        <translation>%1, gelezen op %2</translation>
    </message>
    <message>
        <source>%1, not complete</source>
        <translation>%1, niet volledig</translation>
    </message>
    <message>
        <source>Old values, read on %1: the bus is not connected now.</source>
        <translation>Oude waarden, gelezen op %1: de bus is nu niet verbonden.</translation>
    </message>
    <message>
        <source>Old values, read on %1: the bus was disconnected since. Read again (F5).</source>
        <translation>Oude waarden, gelezen op %1: de verbinding met de bus is sindsdien verbroken geweest. Lees opnieuw (F5).</translation>
    </message>
    <message>
        <source>Old values, read on %1: no longer heard is node %2.</source>
        <translation>Oude waarden, gelezen op %1: niet meer gehoord: node %2.</translation>
    </message>
    <message>
        <source>Not complete: the read of %1 ended early. What is missing was not read.</source>
        <translation>Niet volledig: het lezen op %1 is voortijdig geëindigd. Wat ontbreekt, is niet gelezen.</translation>
    </message>
</context>
<context>
    <name>SimulatedBus</name>
    <message>
        <source>The simulated bus is down</source>
        <translation>De gesimuleerde bus staat uit</translation>
    </message>
    <message>
        <source>The simulated bus runs at %1 bit/s already, not at %2</source>
        <translation>De gesimuleerde bus werkt al op %1 bit/s, niet op %2</translation>
    </message>
</context>
<context>
    <name>Simulator::SimulatedCanDevice</name>
    <message>
        <source>The simulated bus is down</source>
        <translation>De gesimuleerde bus staat uit</translation>
    </message>
    <message>
        <source>%1 bit/s is no bit rate of CAN; possible are 10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000 and 1000000, or 0 for as fast as possible</source>
        <translation>%1 bit/s is geen CAN-bitsnelheid; mogelijk zijn 10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000 en 1000000, of 0 voor zo snel mogelijk</translation>
    </message>
    <message>
        <source>Cannot write this kind of frame</source>
        <translation>Dit soort frame kan niet worden verzonden</translation>
    </message>
    <message>
        <source>No such device or address</source>
        <translation>Geen dergelijk apparaat of adres</translation>
    </message>
    <message>
        <source>No buffer space available</source>
        <translation>Geen bufferruimte beschikbaar</translation>
    </message>
    <message>
        <source>The simulated bus is gone</source>
        <translation>De gesimuleerde bus is verdwenen</translation>
    </message>
    <message>
        <source>There is no node %1 for the fault &quot;%2&quot;</source>
        <translation>Er is geen node %1 voor de storing “%2”</translation>
    </message>
</context>
<context>
    <name>SnapshotComparison</name>
    <message>
        <source>%1 is new.</source>
        <translation>%1 is nieuw.</translation>
    </message>
    <message>
        <source>%1 is gone.</source>
        <translation>%1 is er niet meer.</translation>
    </message>
    <message>
        <source>%1 was on node %2 before.</source>
        <translation>%1 zat eerder op node %2.</translation>
    </message>
    <message>
        <source>%1 was replaced: serial number %2 before, %3 now.</source>
        <translation>%1 is vervangen: serienummer eerder %2, nu %3.</translation>
    </message>
    <message>
        <source>%1 could be read this time. Before: %2</source>
        <translation>%1 kon deze keer worden gelezen. Eerder: %2</translation>
    </message>
    <message>
        <source>%1 could not be read to its end this time. %2</source>
        <translation>%1 kon deze keer niet tot het einde worden gelezen. %2</translation>
    </message>
    <message>
        <source>The vehicle</source>
        <translation>Het voertuig</translation>
    </message>
    <message>
        <source>%1: new: %2</source>
        <translation>%1: nieuw: %2</translation>
    </message>
    <message>
        <source>%1: worse: %2</source>
        <translation>%1: erger: %2</translation>
    </message>
    <message>
        <source>%1: better: %2</source>
        <translation>%1: beter: %2</translation>
    </message>
    <message>
        <source>%1: not any more: %2</source>
        <translation>%1: niet meer: %2</translation>
    </message>
    <message>
        <source>%1: not found, but not everything was checked: %2</source>
        <translation>%1: niet gevonden, maar niet alles is gecontroleerd: %2</translation>
    </message>
    <message>
        <source>%1 (node %2)</source>
        <comment>a device</comment>
        <translation>%1 (node %2)</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>Frames: %1/s</source>
        <translation>Frames: %1/s</translation>
    </message>
    <message>
        <source>Not connected.</source>
        <translation>Niet verbonden.</translation>
    </message>
    <message>
        <source>Connection lost: %1 Trying to connect again ...</source>
        <translation>Verbinding verbroken: %1 Er wordt opnieuw verbinding gemaakt ...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Afbreken</translation>
    </message>
    <message>
        <source>End the read; what was read stays (Esc)</source>
        <translation>Het lezen beëindigen; wat gelezen is, blijft (Esc)</translation>
    </message>
    <message>
        <source>Nodes: %1</source>
        <translation>Nodes: %1</translation>
    </message>
    <message>
        <source>Ending the read ...</source>
        <translation>Het lezen wordt beëindigd ...</translation>
    </message>
    <message>
        <source>Looking for nodes ...</source>
        <translation>Nodes worden gezocht ...</translation>
    </message>
    <message>
        <source>Objects of this read, or of the last one. Since the bus was connected: requests repeated: %1, frames sent again: %2, overruns: %3</source>
        <translation>Objecten van dit of het laatste lezen. Sinds de bus is verbonden: herhaalde verzoeken: %1, opnieuw verzonden frames: %2, overlopen: %3</translation>
    </message>
    <message>
        <source>SDO: %1 read, %2 not there, %3 failed</source>
        <translation>SDO: %1 gelezen, %2 niet aanwezig, %3 mislukt</translation>
    </message>
</context>
<context>
    <name>SystemErrorText</name>
    <message>
        <source>not permitted</source>
        <translation>niet toegestaan</translation>
    </message>
    <message>
        <source>no such file or folder</source>
        <translation>bestand of map bestaat niet</translation>
    </message>
    <message>
        <source>the medium or device failed</source>
        <translation>het medium of apparaat werkt niet goed</translation>
    </message>
    <message>
        <source>no permission</source>
        <translation>geen toestemming</translation>
    </message>
    <message>
        <source>in use by another program</source>
        <translation>in gebruik door een ander programma</translation>
    </message>
    <message>
        <source>no such device</source>
        <translation>apparaat bestaat niet</translation>
    </message>
    <message>
        <source>a part of the path is no folder</source>
        <translation>een deel van het pad is geen map</translation>
    </message>
    <message>
        <source>it is a folder</source>
        <translation>het is een map</translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation>het bestand is te groot</translation>
    </message>
    <message>
        <source>no space is left</source>
        <translation>geen ruimte meer vrij</translation>
    </message>
    <message>
        <source>the medium is read-only</source>
        <translation>het medium is alleen-lezen</translation>
    </message>
    <message>
        <source>the name is too long</source>
        <translation>de naam is te lang</translation>
    </message>
    <message>
        <source>the interface is down</source>
        <translation>de interface is uitgeschakeld</translation>
    </message>
    <message>
        <source>no buffer is free</source>
        <translation>geen buffer vrij</translation>
    </message>
</context>
<context>
    <name>TextTemplate</name>
    <message>
        <source>A text has at most %1 characters</source>
        <translation>Een tekst heeft hoogstens %1 tekens</translation>
    </message>
    <message>
        <source>A brace is opened and not closed, at character %1</source>
        <translation>Er is een accolade geopend en niet gesloten, bij teken %1</translation>
    </message>
    <message>
        <source>A text is no number</source>
        <translation>Een tekst is geen getal</translation>
    </message>
</context>
<context>
    <name>VehicleFiles</name>
    <message>
        <source>Vehicle data (*.dxxml)</source>
        <translation>Voertuiggegevens (*.dxxml)</translation>
    </message>
    <message>
        <source>Open saved vehicle data</source>
        <translation>Opgeslagen voertuiggegevens openen</translation>
    </message>
    <message>
        <source>Save vehicle data</source>
        <translation>Voertuiggegevens opslaan</translation>
    </message>
    <message>
        <source>The values that were read are in no file. Save them before they go?</source>
        <translation>De gelezen waarden staan in geen bestand. Ze opslaan voordat ze verloren gaan?</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Opslaan...</translation>
    </message>
    <message>
        <source>&amp;Do not save</source>
        <translation>&amp;Niet opslaan</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Afbreken</translation>
    </message>
    <message>
        <source>%1 is not a file.</source>
        <translation>%1 is geen bestand.</translation>
    </message>
    <message>
        <source>A file cannot be opened now. Is a read running?</source>
        <translation>Er kan nu geen bestand worden geopend. Wordt er gelezen?</translation>
    </message>
    <message>
        <source>Opened: %1</source>
        <translation>Geopend: %1</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Opgeslagen: %1</translation>
    </message>
    <message>
        <source>What was shown before is still shown.</source>
        <translation>Wat eerst werd getoond, wordt nog steeds getoond.</translation>
    </message>
</context>
</TS>
