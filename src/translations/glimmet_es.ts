<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>ConfigDialog</name>
    <message>
        <source>Open File</source>
        <translation>Abrir archivo</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>Archivo XML (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>Guardar archivo de configuración</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>ConfigManager</name>
    <message>
        <source>Failed to open location %1 for writing.
%2
Configuration file will not be saved.</source>
        <translation>No se pudo abrir %1 para escribir.
%2
El archivo de configuración no se guardará.</translation>
    </message>
    <message>
        <source>Failed to compute XML configuration to be written at location %1.</source>
        <translation>No se pudo preparar la configuración XML que se iba a escribir en %1.</translation>
    </message>
    <message>
        <source>Failed to open location %1 for reading.
Configuration file will not be loaded.</source>
        <translation>No se pudo abrir %1 para leer.
El archivo de configuración no se cargará.</translation>
    </message>
    <message>
        <source>Could not parse XML from location %1.
%2
Configuration file will not be loaded.</source>
        <translation>No se pudo analizar el XML de %1.
%2
El archivo de configuración no se cargará.</translation>
    </message>
    <message>
        <source>Incorrect Tarvek Glimmet configuration file at location %1.
.</source>
        <translation>El archivo %1 no es un archivo de configuración correcto de Tarvek Glimmet.
.</translation>
    </message>
</context>
<context>
    <name>StmListDialog</name>
    <message>
        <source>Ok</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>View devices</source>
        <translation>Ver dispositivos</translation>
    </message>
    <message>
        <source>Filter: </source>
        <translation>Filtro: </translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>Time interval</source>
        <translation>Intervalo de tiempo</translation>
    </message>
    <message>
        <source>Get data every (ms):</source>
        <translation>Obtener datos cada (ms):</translation>
    </message>
    <message>
        <source>Merge with File</source>
        <translation>Combinar con archivo</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>Archivo XML (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>Guardar archivo de configuración</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
</TS>
