<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>ConnectionText</name>
    <message numerus="yes">
        <source>Concerns %1 of %n panels; the others go on.</source>
        <translation>
            <numerusform>Concerns %1 of %n panel; the others go on.</numerusform>
            <numerusform>Concerns %1 of %n panels; the others go on.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message numerus="yes">
        <source>

%n plug-in(s) could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</source>
        <translation>
            <numerusform>

%n plug-in could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</numerusform>
            <numerusform>

%n plug-ins could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) are running. Quitting ends them; their files are kept.</source>
        <translation>
            <numerusform>%n recording is running. Quitting ends it; its file is kept.</numerusform>
            <numerusform>%n recordings are running. Quitting ends them; their files are kept.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ErrorReporter</name>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n more in the details.</numerusform>
            <numerusform>%n more in the details.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FindBar</name>
    <message numerus="yes">
        <source>%n match(es), %1 % searched</source>
        <translation>
            <numerusform>%n match, %1 % searched</numerusform>
            <numerusform>%n matches, %1 % searched</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n match(es)</source>
        <translation>
            <numerusform>%n match</numerusform>
            <numerusform>%n matches</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>%1 (%n panel(s)). %2</source>
        <translation>
            <numerusform>%1 (%n panel). %2</numerusform>
            <numerusform>%1 (%n panels). %2</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RecordingState</name>
    <message numerus="yes">
        <source>%1 rows</source>
        <translation>
            <numerusform>%1 row</numerusform>
            <numerusform>%1 rows</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 polls missed</source>
        <translation>
            <numerusform>%1 poll missed</numerusform>
            <numerusform>%1 polls missed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 values too large</source>
        <translation>
            <numerusform>%1 value too large</numerusform>
            <numerusform>%1 values too large</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Recordings</name>
    <message numerus="yes">
        <source>%n recordings are running in this window: end one of them first.</source>
        <translation>
            <numerusform>%n recording is running in this window: end it first.</numerusform>
            <numerusform>%n recordings are running in this window: end one of them first.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) of this window are running. Closing it ends them; their files are kept.</source>
        <translation>
            <numerusform>%n recording of this window is running. Closing it ends it; its file is kept.</numerusform>
            <numerusform>%n recordings of this window are running. Closing it ends them; their files are kept.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>WorkspaceOpening</name>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n more in the details.</numerusform>
            <numerusform>%n more in the details.</numerusform>
        </translation>
    </message>
</context>
</TS>
