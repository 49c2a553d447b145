<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>ComponentUpdateChecker</name>
    <message>
        <source>No connection to update information server at %1.</source>
        <translation>Aucune connexion au serveur de mises à jour de %1.</translation>
    </message>
</context>
<context>
    <name>DataInterpreter</name>
    <message>
        <source>DXC not supported
</source>
        <translation>DXC non pris en charge
</translation>
    </message>
    <message>
        <source>DXC controller supported
</source>
        <translation>Contrôleur DXC pris en charge
</translation>
    </message>
    <message>
        <source>Active device
</source>
        <translation>Appareil actif
</translation>
    </message>
    <message>
        <source>Passive device
</source>
        <translation>Appareil passif
</translation>
    </message>
    <message>
        <source>Device not changeable by end-user
</source>
        <translation>Appareil non remplaçable par l’utilisateur final
</translation>
    </message>
    <message>
        <source>Device changeable by the end-user
</source>
        <translation>Appareil remplaçable par l’utilisateur final
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality not supported
</source>
        <translation>Fonctions spécifiques au fabricant non prises en charge
</translation>
    </message>
    <message>
        <source>Manufacturer-specific functionality supported
</source>
        <translation>Fonctions spécifiques au fabricant prises en charge
</translation>
    </message>
    <message>
        <source>Masterless mode not supported
</source>
        <translation>Mode sans maître non pris en charge
</translation>
    </message>
    <message>
        <source>Masterless mode supported
</source>
        <translation>Mode sans maître pris en charge
</translation>
    </message>
    <message>
        <source>CANopen device not in Bootloader mode; application software running</source>
        <translation>Appareil CANopen hors du mode bootloader&#xa0;; logiciel applicatif en cours d’exécution</translation>
    </message>
    <message>
        <source>Bootloader active; no application software is running</source>
        <translation>Bootloader actif&#xa0;; aucun logiciel applicatif en cours d’exécution</translation>
    </message>
    <message>
        <source>Over voltage alarm supported</source>
        <translation>Alarme de surtension prise en charge</translation>
    </message>
    <message>
        <source>Under voltage alarm supported</source>
        <translation>Alarme de sous-tension prise en charge</translation>
    </message>
    <message>
        <source>Output over current alarm supported</source>
        <translation>Alarme de surintensité en sortie prise en charge</translation>
    </message>
    <message>
        <source>Input over current alarm supported</source>
        <translation>Alarme de surintensité en entrée prise en charge</translation>
    </message>
    <message>
        <source>Electronic over temperature alarm supported</source>
        <translation>Alarme de surchauffe de l’électronique prise en charge</translation>
    </message>
    <message>
        <source>Battery cells over temperature alarm supported</source>
        <translation>Alarme de surchauffe des cellules de la batterie prise en charge</translation>
    </message>
    <message>
        <source>Communication error alarm supported</source>
        <translation>Alarme d’erreur de communication prise en charge</translation>
    </message>
    <message>
        <source>Battery compatibility error alarm supported</source>
        <translation>Alarme d’incompatibilité de la batterie prise en charge</translation>
    </message>
    <message>
        <source>Electronic power stage defect alarm supported</source>
        <translation>Alarme de défaut de l’étage de puissance prise en charge</translation>
    </message>
    <message>
        <source>Fuse blown alarm supported</source>
        <translation>Alarme de fusible grillé prise en charge</translation>
    </message>
    <message>
        <source>Cell damaged alarm supported</source>
        <translation>Alarme de cellule endommagée prise en charge</translation>
    </message>
    <message>
        <source>Charge over temperature alarm supported</source>
        <translation>Alarme de surchauffe en charge prise en charge</translation>
    </message>
    <message>
        <source>Discharge over temperature alarm supported</source>
        <translation>Alarme de surchauffe en décharge prise en charge</translation>
    </message>
    <message>
        <source>Sensor damaged alarm supported</source>
        <translation>Alarme de capteur endommagé prise en charge</translation>
    </message>
    <message>
        <source>Wire broken alarm supported</source>
        <translation>Alarme de rupture de fil prise en charge</translation>
    </message>
    <message>
        <source>Isolation damaged alarm supported</source>
        <translation>Alarme de défaut d’isolement prise en charge</translation>
    </message>
    <message>
        <source>Device is able to switch off or on</source>
        <translation>L’appareil peut se mettre hors tension et sous tension</translation>
    </message>
    <message>
        <source>Device is possibly active</source>
        <translation>L’appareil est peut-être actif</translation>
    </message>
    <message>
        <source>Device is a master capable</source>
        <translation>L’appareil peut être maître</translation>
    </message>
    <message>
        <source>Device is able to switch to sleep mode</source>
        <translation>L’appareil peut passer en mode veille</translation>
    </message>
    <message>
        <source>Device is able to limit the input current</source>
        <translation>L’appareil peut limiter le courant d’entrée</translation>
    </message>
    <message>
        <source>Device is able to limit the output current</source>
        <translation>L’appareil peut limiter le courant de sortie</translation>
    </message>
    <message>
        <source>Device is able to limit the input voltage</source>
        <translation>L’appareil peut limiter la tension d’entrée</translation>
    </message>
    <message>
        <source>Device is able to limit the output voltage</source>
        <translation>L’appareil peut limiter la tension de sortie</translation>
    </message>
    <message>
        <source>Device is able to transmit dynamic limitation</source>
        <translation>L’appareil peut émettre des limites dynamiques</translation>
    </message>
    <message>
        <source>Device is able to receive dynamic limitation</source>
        <translation>L’appareil peut recevoir des limites dynamiques</translation>
    </message>
    <message>
        <source>Mechanical locking with charge&amp;lock cable supported</source>
        <translation>Verrouillage mécanique par câble de charge et d’antivol pris en charge</translation>
    </message>
    <message>
        <source>Optical alarm supported</source>
        <translation>Alarme visuelle prise en charge</translation>
    </message>
    <message>
        <source>Vibration alarm supported</source>
        <translation>Alarme par vibration prise en charge</translation>
    </message>
    <message>
        <source>RFID-key supported</source>
        <translation>Clé RFID prise en charge</translation>
    </message>
    <message>
        <source>Mechanical key supported</source>
        <translation>Clé mécanique prise en charge</translation>
    </message>
    <message>
        <source>GPS position tracking supported</source>
        <translation>Localisation GPS prise en charge</translation>
    </message>
    <message>
        <source>Acoustic alarm supported</source>
        <translation>Alarme sonore prise en charge</translation>
    </message>
    <message>
        <source>Softlock is supported</source>
        <translation>Antidémarrage électronique (softlock) pris en charge</translation>
    </message>
    <message>
        <source>Mechanical locking (except charge&amp;lock cable) supported</source>
        <translation>Verrouillage mécanique (hors câble de charge et d’antivol) pris en charge</translation>
    </message>
    <message>
        <source>Security not supported</source>
        <translation>Antivol non pris en charge</translation>
    </message>
    <message>
        <source>Security device; activation in a very secure environment only</source>
        <translation>Dispositif antivol&#xa0;; activation uniquement dans un environnement hautement sécurisé</translation>
    </message>
    <message>
        <source>Internal device; user has the possibility to activate the key</source>
        <translation>Appareil interne&#xa0;; l’utilisateur peut activer la clé</translation>
    </message>
    <message>
        <source>External device; temporary keys required</source>
        <translation>Appareil externe&#xa0;; clés temporaires nécessaires</translation>
    </message>
    <message>
        <source>Internal device, simple changeable; automatic activation of the key resp. simple key learning possible</source>
        <translation>Appareil interne, facile à remplacer&#xa0;; activation automatique de la clé ou apprentissage simple de la clé possible</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25 km/h)</source>
        <translation>Vélo à assistance électrique, vitesse limitée (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45 km/h)</source>
        <translation>Vélo à assistance électrique, vitesse limitée (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45 km/h)</source>
        <translation>Vélo à assistance électrique rapide (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;25 km/h)</source>
        <translation>Vélo électrique, vitesse limitée (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;45 km/h)</source>
        <translation>Vélo électrique, vitesse limitée (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Motor-bike with speed (&gt;45 km/h)</source>
        <translation>Moto (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;32 km/h) USA</source>
        <translation>Vélo électrique, vitesse limitée (&lt;32 km/h), États-Unis</translation>
    </message>
    <message>
        <source>Electrical bicycle with speed limit (&lt;20 km/h) CN</source>
        <translation>Vélo électrique, vitesse limitée (&lt;20 km/h), Chine</translation>
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
        <translation>Fauteuil roulant</translation>
    </message>
    <message>
        <source>Chemistry not specified</source>
        <translation>Chimie non précisée</translation>
    </message>
    <message>
        <source>Lead acid (PbA)</source>
        <translation>Plomb-acide (PbA)</translation>
    </message>
    <message>
        <source>Nickel cadmium</source>
        <translation>Nickel-cadmium</translation>
    </message>
    <message>
        <source>Nickel zinc (Ni-Zn)</source>
        <translation>Nickel-zinc (Ni-Zn)</translation>
    </message>
    <message>
        <source>Reserved</source>
        <translation>Réservé</translation>
    </message>
    <message>
        <source>Nickel iron (Ni-Fe)</source>
        <translation>Nickel-fer (Ni-Fe)</translation>
    </message>
    <message>
        <source>Silver oxide</source>
        <translation>Oxyde d’argent</translation>
    </message>
    <message>
        <source>Nickel hydrogen (NiH2)</source>
        <translation>Nickel-hydrogène (NiH2)</translation>
    </message>
    <message>
        <source>Nickel metal hydride</source>
        <translation>Nickel-hydrure métallique</translation>
    </message>
    <message>
        <source>Zinc/Alkaline/Manganese dioxide</source>
        <translation>Zinc/alcalin/dioxyde de manganèse</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - carbon anode</source>
        <translation>Lithium-ion (Li-Ion) - anode en carbone</translation>
    </message>
    <message>
        <source>Lithium Ion (Li-Ion) - Lithium titanate anode</source>
        <translation>Lithium-ion (Li-Ion) - anode en titanate de lithium</translation>
    </message>
    <message>
        <source>Zinc bromine</source>
        <translation>Zinc-brome</translation>
    </message>
    <message>
        <source>Metal air</source>
        <translation>Métal-air</translation>
    </message>
    <message>
        <source>Lithium-Iron-sulphide</source>
        <translation>Lithium-sulfure de fer</translation>
    </message>
    <message>
        <source>Sodium beta</source>
        <translation>Sodium-bêta</translation>
    </message>
    <message>
        <source>Alarm not supported</source>
        <translation>Aucune alarme prise en charge</translation>
    </message>
    <message>
        <source>No installed batteries</source>
        <translation>Aucune batterie installée</translation>
    </message>
    <message>
        <source>No connected batteries</source>
        <translation>Aucune batterie connectée</translation>
    </message>
    <message>
        <source>No unconnected installed batteries</source>
        <translation>Aucune batterie installée non connectée</translation>
    </message>
    <message>
        <source>Security properties</source>
        <translation>Propriétés de l’antivol</translation>
    </message>
    <message>
        <source>Key class</source>
        <translation>Classe de clé</translation>
    </message>
    <message>
        <source>undefined</source>
        <translation>non défini</translation>
    </message>
    <message>
        <source>DX is on,</source>
        <translation>DX sous tension,</translation>
    </message>
    <message>
        <source>DX is awake,</source>
        <translation>DX est réveillé,</translation>
    </message>
    <message>
        <source>DX in standby,</source>
        <translation>DX en veille,</translation>
    </message>
    <message>
        <source>DX runs,</source>
        <translation>DX fonctionne,</translation>
    </message>
    <message>
        <source>DX warning,</source>
        <translation>Avertissement DX,</translation>
    </message>
    <message>
        <source>DX error,</source>
        <translation>Erreur DX,</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;25km/h</source>
        <translation>Vélo à assistance électrique, vitesse limitée (&lt;25 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed limit (&lt;45km/h</source>
        <translation>Vélo à assistance électrique, vitesse limitée (&lt;45 km/h)</translation>
    </message>
    <message>
        <source>Pedelec with speed (&gt;45km/h</source>
        <translation>Vélo à assistance électrique rapide (&gt;45 km/h)</translation>
    </message>
    <message>
        <source>%1,</source>
        <translation>%1,</translation>
    </message>
    <message>
        <source>reserved</source>
        <translation>réservé</translation>
    </message>
    <message>
        <source>Vendor ID</source>
        <translation>Identifiant du fabricant</translation>
    </message>
    <message>
        <source>Generic error</source>
        <translation>Erreur générale</translation>
    </message>
    <message>
        <source>
Current Error</source>
        <translation>
Erreur de courant</translation>
    </message>
    <message>
        <source>
Voltage Error</source>
        <translation>
Erreur de tension</translation>
    </message>
    <message>
        <source>
Temperature Error</source>
        <translation>
Erreur de température</translation>
    </message>
    <message>
        <source>
Communication error</source>
        <translation>
Erreur de communication</translation>
    </message>
    <message>
        <source>
Device profile specific</source>
        <translation>
Erreur spécifique au profil d’appareil</translation>
    </message>
    <message>
        <source>
Manufactor specific error</source>
        <translation>
Erreur spécifique au fabricant</translation>
    </message>
    <message>
        <source>Locking mechanism supported
</source>
        <translation>Mécanisme de verrouillage pris en charge
</translation>
    </message>
    <message>
        <source>No locking mechanism supported
</source>
        <translation>Aucun mécanisme de verrouillage pris en charge
</translation>
    </message>
    <message>
        <source>Device is locked locally
</source>
        <translation>L’appareil est verrouillé localement
</translation>
    </message>
    <message>
        <source>Device is not locked locally
</source>
        <translation>L’appareil n’est pas verrouillé localement
</translation>
    </message>
    <message>
        <source>No manipulation detected
</source>
        <translation>Aucune manipulation détectée
</translation>
    </message>
    <message>
        <source>Manipulation detected
</source>
        <translation>Manipulation détectée
</translation>
    </message>
    <message>
        <source>Device does not own the current encryption key
</source>
        <translation>L’appareil ne possède pas la clé de chiffrement actuelle
</translation>
    </message>
    <message>
        <source>Device owns current encryption key
</source>
        <translation>L’appareil possède la clé de chiffrement actuelle
</translation>
    </message>
    <message>
        <source>Initial encryption key is missing
</source>
        <translation>La clé de chiffrement initiale manque
</translation>
    </message>
    <message>
        <source>Device owns initial encryption key
</source>
        <translation>L’appareil possède la clé de chiffrement initiale
</translation>
    </message>
    <message>
        <source>No network lock requested
</source>
        <translation>Aucun verrouillage du réseau demandé
</translation>
    </message>
    <message>
        <source>Locking of all virtual devices in the EMS requested
</source>
        <translation>Verrouillage de tous les appareils virtuels de l’EMS demandé
</translation>
    </message>
    <message>
        <source>Network is not locked
</source>
        <translation>Le réseau n’est pas verrouillé
</translation>
    </message>
    <message>
        <source>All virtual devices in the EMS that support softlocking are locked
</source>
        <translation>Tous les appareils virtuels de l’EMS avec antidémarrage électronique (softlock) sont verrouillés
</translation>
    </message>
    <message>
        <source>No action</source>
        <translation>Aucune action</translation>
    </message>
    <message>
        <source>Enter operating</source>
        <translation>Passer en fonctionnement</translation>
    </message>
    <message>
        <source>Enter limiting</source>
        <translation>Passer en limitation</translation>
    </message>
    <message>
        <source>Enter connected</source>
        <translation>Passer à l’état connecté</translation>
    </message>
    <message>
        <source>Enter disconnected</source>
        <translation>Passer à l’état déconnecté</translation>
    </message>
    <message>
        <source>Enter masterless operating</source>
        <translation>Passer en fonctionnement sans maître</translation>
    </message>
    <message>
        <source>Enter compatibillity check</source>
        <translation>Passer à la vérification de compatibilité</translation>
    </message>
    <message>
        <source>Enter sleep mode and keep local layer settings</source>
        <translation>Passer en mode veille et conserver les réglages locaux de la couche</translation>
    </message>
    <message>
        <source>Enter sleep mode and set node id to 0xFF</source>
        <translation>Passer en mode veille et mettre l’ID de nœud à 0xFF</translation>
    </message>
    <message>
        <source>Current input active </source>
        <translation>Entrée de courant active </translation>
    </message>
    <message>
        <source>Current output active </source>
        <translation>Sortie de courant active </translation>
    </message>
    <message>
        <source>Fixed voltage input active </source>
        <translation>Entrée à tension fixe active </translation>
    </message>
    <message>
        <source>Fixed voltage output active </source>
        <translation>Sortie à tension fixe active </translation>
    </message>
    <message>
        <source>Current regulation/limitation active </source>
        <translation>Régulation/limitation de courant active </translation>
    </message>
    <message>
        <source>Voltage regulation/limitation active </source>
        <translation>Régulation/limitation de tension active </translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Déconnecté</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Compatibility Check</source>
        <translation>Vérification de compatibilité</translation>
    </message>
    <message>
        <source>Limiting</source>
        <translation>Limitation</translation>
    </message>
    <message>
        <source>Operating</source>
        <translation>En fonctionnement</translation>
    </message>
    <message>
        <source>Masterless</source>
        <translation>Sans maître</translation>
    </message>
    <message>
        <source>Sleep Mode</source>
        <translation>Mode veille</translation>
    </message>
    <message>
        <source>Powerline on </source>
        <translation>Ligne de puissance sous tension </translation>
    </message>
    <message>
        <source>Powerline off </source>
        <translation>Ligne de puissance hors tension </translation>
    </message>
    <message>
        <source>EMS is not sleeping, ready to work </source>
        <translation>EMS éveillé, prêt à fonctionner </translation>
    </message>
    <message>
        <source>CAN communication is working properly </source>
        <translation>La communication CAN fonctionne correctement </translation>
    </message>
    <message>
        <source>EMS warning </source>
        <translation>Avertissement EMS </translation>
    </message>
    <message>
        <source>EMS error </source>
        <translation>Erreur EMS </translation>
    </message>
    <message>
        <source>Emergency shutdown</source>
        <translation>Arrêt d’urgence</translation>
    </message>
    <message>
        <source>nothing active</source>
        <translation>rien d’actif</translation>
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
        <translation>%1 Ah/jour</translation>
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
        <translation>%1 degrés</translation>
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
        <translation>%1 tr/min</translation>
    </message>
    <message>
        <source>%1 revolution</source>
        <translation>%1 tours</translation>
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
        <translation>%1 bpm</translation>
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
        <translation>%1 jours</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 minutes</translation>
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
        <translation>Le fichier n’est pas un fichier d’échange&#xa0;: la ligne %1, colonne %2, contient du XML qu’un fichier d’échange n’a jamais (entités, ou beaucoup trop d’attributs, de niveaux ou d’espaces de noms).</translation>
    </message>
    <message>
        <source>There is no node in the file.</source>
        <translation>Le fichier ne contient aucun nœud.</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Impossible d’écrire le fichier %1&#xa0;: %2.</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2.</source>
        <translation>Impossible de lire le fichier %1&#xa0;: %2.</translation>
    </message>
    <message>
        <source>The file lists far more nodes than a vehicle can have, the first one too many in line %1, column %2.</source>
        <translation>Le fichier contient bien plus de nœuds qu’un véhicule ne peut en avoir&#xa0;; le premier en trop se trouve ligne %1, colonne %2.</translation>
    </message>
    <message>
        <source>The file is not complete: it ends in line %1, column %2.</source>
        <translation>Le fichier est incomplet&#xa0;: il s’arrête ligne %1, colonne %2.</translation>
    </message>
    <message>
        <source>The file is not XML: line %1, column %2: %3</source>
        <translation>Le fichier n’est pas du XML&#xa0;: ligne %1, colonne %2&#xa0;: %3</translation>
    </message>
    <message>
        <source>The file %1 is far too large for an exchange file.</source>
        <translation>Le fichier %1 est beaucoup trop volumineux pour un fichier d’échange.</translation>
    </message>
</context>
<context>
    <name>OverviewForm</name>
    <message>
        <source>Form</source>
        <translation>Vue d’ensemble</translation>
    </message>
    <message>
        <source>Node-Id</source>
        <translation>ID de nœud</translation>
    </message>
    <message>
        <source>NMT-State</source>
        <translation>État NMT</translation>
    </message>
    <message>
        <source>DX FSA State</source>
        <translation>État FSA DX</translation>
    </message>
    <message>
        <source>Device Parameters (fixed)</source>
        <translation>Paramètres de l’appareil (fixes)</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Propriété</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
    <message>
        <source>Actual Values</source>
        <translation>Valeurs actuelles</translation>
    </message>
    <message>
        <source>Scan for devices and read all data from the components</source>
        <translation>Rechercher les appareils et lire toutes les données des composants</translation>
    </message>
    <message>
        <source>Read all data</source>
        <translation>Lire toutes les données</translation>
    </message>
    <message>
        <source>Export all data as XML file to later use.</source>
        <translation>Exporter toutes les données dans un fichier XML pour un usage ultérieur.</translation>
    </message>
    <message>
        <source>Export </source>
        <translation>Exporter </translation>
    </message>
    <message>
        <source>Import exported data</source>
        <translation>Importer des données exportées</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>Generate and save a PDF Report of all  data from all devices</source>
        <translation>Générer et enregistrer un rapport PDF de toutes les données de tous les appareils</translation>
    </message>
    <message>
        <source>Save PDF Report</source>
        <translation>Enregistrer le rapport PDF</translation>
    </message>
    <message>
        <source>Check for Component update</source>
        <translation>Rechercher une mise à jour du composant</translation>
    </message>
    <message>
        <source>Draxel Controller/Charger</source>
        <translation>Contrôleur Draxel/chargeur</translation>
    </message>
    <message>
        <source>Draxel Controller</source>
        <translation>Contrôleur Draxel</translation>
    </message>
    <message>
        <source>Voltage Converter/Charger</source>
        <translation>Convertisseur de tension/chargeur</translation>
    </message>
    <message>
        <source>Battery Pack</source>
        <translation>Pack batterie</translation>
    </message>
    <message>
        <source>Motor Control unit</source>
        <translation>Contrôleur moteur</translation>
    </message>
    <message>
        <source>Load monitoring unit</source>
        <translation>Unité de surveillance des consommateurs</translation>
    </message>
    <message>
        <source>HMI control unit/display</source>
        <translation>Unité de commande IHM/afficheur</translation>
    </message>
    <message>
        <source>Security unit</source>
        <translation>Unité antivol</translation>
    </message>
    <message>
        <source>Sensor unit</source>
        <translation>Unité de capteurs</translation>
    </message>
    <message>
        <source>Gateway unit</source>
        <translation>Passerelle</translation>
    </message>
    <message>
        <source>Generator unit</source>
        <translation>Générateur</translation>
    </message>
    <message>
        <source>Load unit</source>
        <translation>Consommateur</translation>
    </message>
    <message>
        <source>manufacturer-specific device</source>
        <translation>appareil spécifique au fabricant</translation>
    </message>
    <message>
        <source> External Device </source>
        <translation> Appareil externe </translation>
    </message>
    <message>
        <source> VDN </source>
        <translation> VDN </translation>
    </message>
    <message>
        <source>Implemented specification versions</source>
        <translation>Versions des spécifications implémentées</translation>
    </message>
    <message>
        <source>Security Status</source>
        <translation>État de l’antivol</translation>
    </message>
    <message>
        <source>Battery Pack </source>
        <translation>Pack batterie </translation>
    </message>
    <message>
        <source> highest temperature</source>
        <translation> température maximale</translation>
    </message>
    <message>
        <source> sensor </source>
        <translation> capteur </translation>
    </message>
    <message>
        <source> temperature</source>
        <translation> température</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>État de la batterie</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Boot-up</source>
        <translation>Démarrage</translation>
    </message>
    <message>
        <source>Pre-Op</source>
        <translation>Pré-opérationnel</translation>
    </message>
    <message>
        <source>Operational</source>
        <translation>Opérationnel</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source> external device </source>
        <translation> appareil externe </translation>
    </message>
    <message>
        <source>Draxel FSA state</source>
        <translation>État FSA Draxel</translation>
    </message>
    <message>
        <source>Device Type</source>
        <translation>Type d’appareil</translation>
    </message>
    <message>
        <source>Shows device type information</source>
        <translation>Affiche les informations sur le type d’appareil</translation>
    </message>
    <message>
        <source>Device information</source>
        <translation>Informations sur l’appareil</translation>
    </message>
    <message>
        <source>Error register</source>
        <translation>Registre d’erreurs</translation>
    </message>
    <message>
        <source>Shows detailed error information</source>
        <translation>Affiche des informations détaillées sur les erreurs</translation>
    </message>
    <message>
        <source>Error field</source>
        <translation>Historique des erreurs</translation>
    </message>
    <message>
        <source>Shows last occured errors</source>
        <translation>Affiche les dernières erreurs survenues</translation>
    </message>
    <message>
        <source>Error information</source>
        <translation>Informations sur les erreurs</translation>
    </message>
    <message>
        <source>Shows the implemented specifications</source>
        <translation>Affiche les spécifications implémentées</translation>
    </message>
    <message>
        <source>Implemented specification</source>
        <translation>Spécification implémentée</translation>
    </message>
    <message>
        <source>Shows implemented security status</source>
        <translation>Affiche l’état de l’antivol</translation>
    </message>
    <message>
        <source>Draxel Tool XML files (*.dxxml)</source>
        <translation>Fichiers XML de Draxel Tool (*.dxxml)</translation>
    </message>
    <message>
        <source>No connection to Draxel. Please connect to Draxel and retry.</source>
        <translation>Aucune connexion à Draxel. Connectez-vous à Draxel et réessayez.</translation>
    </message>
    <message>
        <source>Export Draxel LEV Network information</source>
        <translation>Exporter les informations du réseau LEV Draxel</translation>
    </message>
    <message>
        <source>Import Draxel LEV Network information</source>
        <translation>Importer les informations du réseau LEV Draxel</translation>
    </message>
    <message>
        <source>No component selected.</source>
        <translation>Aucun composant sélectionné.</translation>
    </message>
    <message>
        <source>No devices found. Read all data from Draxel or import data from XML file.</source>
        <translation>Aucun appareil trouvé. Lisez toutes les données depuis Draxel ou importez des données depuis un fichier XML.</translation>
    </message>
    <message>
        <source>Characters not shown: %1</source>
        <translation>Caractères non affichés&#xa0;: %1</translation>
    </message>
    <message>
        <source>Save text</source>
        <translation>Enregistrer le texte</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Impossible d’écrire le fichier %1&#xa0;: %2.</translation>
    </message>
    <message>
        <source>Save text...</source>
        <translation>Enregistrer le texte...</translation>
    </message>
</context>
<context>
    <name>pdfWriter</name>
    <message>
        <source>Draxel FSA state</source>
        <translation>État FSA Draxel</translation>
    </message>
    <message>
        <source>Battery Status</source>
        <translation>État de la batterie</translation>
    </message>
    <message>
        <source>printing broke off, perhaps because the disk is full</source>
        <translation>l’impression s’est interrompue, peut-être parce que le disque est plein</translation>
    </message>
    <message>
        <source>The file %1 cannot be written: %2.</source>
        <translation>Impossible d’écrire le fichier %1&#xa0;: %2.</translation>
    </message>
</context>
</TS>
