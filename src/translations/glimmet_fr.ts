<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>ConfigDialog</name>
    <message>
        <source>Open File</source>
        <translation>Ouvrir un fichier</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>Fichier XML (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>Enregistrer le fichier de configuration</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>ConfigManager</name>
    <message>
        <source>Failed to open location %1 for writing.
%2
Configuration file will not be saved.</source>
        <translation>Impossible d&apos;ouvrir %1 en écriture.
%2
Le fichier de configuration ne sera pas enregistré.</translation>
    </message>
    <message>
        <source>Failed to compute XML configuration to be written at location %1.</source>
        <translation>Impossible de préparer la configuration XML à écrire dans %1.</translation>
    </message>
    <message>
        <source>Failed to open location %1 for reading.
Configuration file will not be loaded.</source>
        <translation>Impossible d&apos;ouvrir %1 en lecture.
Le fichier de configuration ne sera pas chargé.</translation>
    </message>
    <message>
        <source>Could not parse XML from location %1.
%2
Configuration file will not be loaded.</source>
        <translation>Impossible d&apos;analyser le XML de %1.
%2
Le fichier de configuration ne sera pas chargé.</translation>
    </message>
    <message>
        <source>Incorrect Tarvek Glimmet configuration file at location %1.
.</source>
        <translation>Le fichier %1 n&apos;est pas un fichier de configuration correct de Tarvek Glimmet.
.</translation>
    </message>
</context>
<context>
    <name>StmListDialog</name>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>View devices</source>
        <translation>Afficher les appareils</translation>
    </message>
    <message>
        <source>Filter: </source>
        <translation>Filtre&#xa0;: </translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>Time interval</source>
        <translation>Intervalle de temps</translation>
    </message>
    <message>
        <source>Get data every (ms):</source>
        <translation>Lire les données toutes les (ms)&#xa0;:</translation>
    </message>
    <message>
        <source>Merge with File</source>
        <translation>Fusionner avec un fichier</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>Fichier XML (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>Enregistrer le fichier de configuration</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
</TS>
