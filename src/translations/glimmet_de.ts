<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>ConfigDialog</name>
    <message>
        <source>Open File</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>XML-Datei (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>Konfigurationsdatei speichern</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>ConfigManager</name>
    <message>
        <source>Failed to open location %1 for writing.
%2
Configuration file will not be saved.</source>
        <translation>%1 konnte nicht zum Schreiben geöffnet werden.
%2
Die Konfigurationsdatei wird nicht gespeichert.</translation>
    </message>
    <message>
        <source>Failed to compute XML configuration to be written at location %1.</source>
        <translation>Die XML-Konfiguration, die nach %1 geschrieben werden sollte, konnte nicht erstellt werden.</translation>
    </message>
    <message>
        <source>Failed to open location %1 for reading.
Configuration file will not be loaded.</source>
        <translation>%1 konnte nicht zum Lesen geöffnet werden.
Die Konfigurationsdatei wird nicht geladen.</translation>
    </message>
    <message>
        <source>Could not parse XML from location %1.
%2
Configuration file will not be loaded.</source>
        <translation>Das XML in %1 konnte nicht gelesen werden.
%2
Die Konfigurationsdatei wird nicht geladen.</translation>
    </message>
    <message>
        <source>Incorrect Tarvek Glimmet configuration file at location %1.
.</source>
        <translation>Die Datei %1 ist keine gültige Konfigurationsdatei von Tarvek Glimmet.
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
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>View devices</source>
        <translation>Geräte anzeigen</translation>
    </message>
    <message>
        <source>Filter: </source>
        <translation>Filter: </translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>Time interval</source>
        <translation>Zeitabstand</translation>
    </message>
    <message>
        <source>Get data every (ms):</source>
        <translation>Daten abrufen alle (ms):</translation>
    </message>
    <message>
        <source>Merge with File</source>
        <translation>Mit Datei zusammenführen</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>XML-Datei (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>Konfigurationsdatei speichern</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
</TS>
