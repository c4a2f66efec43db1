<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Application</name>
    <message>
        <source>An error that does not describe itself.</source>
        <translation>Ein Fehler, der sich nicht selbst beschreibt.</translation>
    </message>
</context>
<context>
    <name>CheckDialog</name>
    <message>
        <source>ok</source>
        <translation>in Ordnung</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>skipped</source>
        <translation>übersprungen</translation>
    </message>
    <message>
        <source>look-up</source>
        <translation>Adresssuche</translation>
    </message>
    <message>
        <source>connection</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>encryption</source>
        <translation>Verschlüsselung</translation>
    </message>
    <message>
        <source>answer</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>readiness</source>
        <translation>Bereitschaft</translation>
    </message>
    <message>
        <source>login</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>rights</source>
        <translation>Rechte</translation>
    </message>
    <message>
        <source>server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>keys</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>round trip</source>
        <translation>Umlaufzeit</translation>
    </message>
    <message>
        <source>notices</source>
        <translation>Benachrichtigungen</translation>
    </message>
    <message>
        <source>Check the name, or enter the address itself.</source>
        <translation>Prüfen Sie den Namen, oder geben Sie die Adresse selbst ein.</translation>
    </message>
    <message>
        <source>Is the robot on, does its memory listen to this network at this port, and does no firewall stand between?</source>
        <translation>Ist der Roboter eingeschaltet, ist sein Speicher in diesem Netz an diesem Port zu erreichen, und steht keine Firewall dazwischen?</translation>
    </message>
    <message>
        <source>Does the robot speak TLS at this port? Is the file of authorities that of the one who signed its certificate?</source>
        <translation>Spricht der Roboter an diesem Port TLS? Ist die Datei der Zertifizierungsstellen die derjenigen, die sein Zertifikat unterschrieben hat?</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, and does it want to see a certificate?</source>
        <translation>Ist dort der Speicher eines Roboters, und will er ein Zertifikat sehen?</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, does it hang, or does it want encryption?</source>
        <translation>Ist dort der Speicher eines Roboters, hängt er, oder will er Verschlüsselung?</translation>
    </message>
    <message>
        <source>Try again in a while.</source>
        <translation>Versuchen Sie es nach einer Weile noch einmal.</translation>
    </message>
    <message>
        <source>Check user and password.</source>
        <translation>Prüfen Sie Benutzer und Passwort.</translation>
    </message>
    <message>
        <source>The robot&apos;s access list must allow this user SCAN, MGET, and to read the keys.</source>
        <translation>Die Zugriffsliste des Roboters muss diesem Benutzer SCAN, MGET und das Lesen der Schlüssel erlauben.</translation>
    </message>
    <message>
        <source>Test of %1</source>
        <translation>Test von %1</translation>
    </message>
    <message>
        <source>Looking up the address...</source>
        <translation>Die Adresse wird gesucht...</translation>
    </message>
    <message>
        <source>%1 - %2: %3</source>
        <translation>%1 - %2: %3</translation>
    </message>
    <message>
        <source>
All that a panel needs works.</source>
        <translation>
Alles, was ein Panel braucht, funktioniert.</translation>
    </message>
    <message>
        <source>
A panel would not work with this robot.</source>
        <translation>
Ein Panel würde mit diesem Roboter nicht funktionieren.</translation>
    </message>
</context>
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Connect to a robot</source>
        <translation>Mit einem Roboter verbinden</translation>
    </message>
    <message>
        <source>&amp;Test...</source>
        <translation>&amp;Testen...</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>Save the robot</source>
        <translation>Roboter speichern</translation>
    </message>
    <message>
        <source>Name of the robot. One that has this name already is replaced.</source>
        <translation>Name des Roboters. Einer, der schon so heißt, wird ersetzt.</translation>
    </message>
</context>
<context>
    <name>Connecting</name>
    <message>
        <source>asking the desktop&apos;s keyring for the password</source>
        <translation>der Schlüsselbund wird nach dem Passwort gefragt</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Verbinden mit %1...</translation>
    </message>
    <message>
        <source>Connecting to %1: %2...</source>
        <translation>Verbinden mit %1: %2...</translation>
    </message>
    <message>
        <source>There is no connection to %1.

%2

Check the address and the port, what the robot asks for (user, password, encryption), and whether it is on.</source>
        <translation>Es gibt keine Verbindung zu %1.

%2

Prüfen Sie die Adresse und den Port, was der Roboter verlangt (Benutzer, Passwort, Verschlüsselung), und ob er eingeschaltet ist.</translation>
    </message>
</context>
<context>
    <name>ConnectionAttempt</name>
    <message>
        <source>looking up the address</source>
        <translation>die Adresse wird gesucht</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>die Verbindung wird aufgebaut</translation>
    </message>
    <message>
        <source>setting up the encryption</source>
        <translation>die Verschlüsselung wird eingerichtet</translation>
    </message>
    <message>
        <source>logging in</source>
        <translation>Anmeldung läuft</translation>
    </message>
    <message>
        <source>trying</source>
        <translation>es wird versucht</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%1 über %2</translation>
    </message>
</context>
<context>
    <name>ConnectionForm</name>
    <message>
        <source>%1 as %2</source>
        <translation>%1 als %2</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>ohne</translation>
    </message>
    <message>
        <source>What the robot&apos;s keys begin with on a server of many robots, as robot7/. Keys are shown without it.</source>
        <translation>Womit die Schlüssel des Roboters auf einem Server vieler Roboter beginnen, etwa robot7/. Die Schlüssel werden ohne das gezeigt.</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>Prefi&amp;x:</source>
        <translation>Präfi&amp;x:</translation>
    </message>
    <message>
        <source>the default user</source>
        <translation>der Standardbenutzer</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>Ben&amp;utzer:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>Pass&amp;wort:</translation>
    </message>
    <message>
        <source>Keep it in the desktop&apos;s keyri&amp;ng</source>
        <translation>Im Schlüsselbu&amp;nd aufbewahren</translation>
    </message>
    <message>
        <source>&amp;Encrypt (TLS)</source>
        <translation>V&amp;erschlüsseln (TLS)</translation>
    </message>
    <message>
        <source>File of authorities</source>
        <translation>Datei der Zertifizierungsstellen</translation>
    </message>
    <message>
        <source>those of the system</source>
        <translation>die des Systems</translation>
    </message>
    <message>
        <source>Certificate to show</source>
        <translation>Vorzuzeigendes Zertifikat</translation>
    </message>
    <message>
        <source>Key of the certificate</source>
        <translation>Schlüssel des Zertifikats</translation>
    </message>
    <message>
        <source>Auth&amp;orities:</source>
        <translation>&amp;Zertifizierungsstellen:</translation>
    </message>
    <message>
        <source>Ce&amp;rtificate:</source>
        <translation>Ze&amp;rtifikat:</translation>
    </message>
    <message>
        <source>&amp;Key:</source>
        <translation>Sch&amp;lüssel:</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>for a local network</source>
        <translation>für ein lokales Netz</translation>
    </message>
    <message>
        <source>The longest wait for a connection, and for an answer. A slow network needs more.</source>
        <translation>Wie lange höchstens auf eine Verbindung und auf eine Antwort gewartet wird. Ein langsames Netz braucht mehr.</translation>
    </message>
    <message>
        <source>T&amp;ime-out:</source>
        <translation>Ze&amp;itlimit:</translation>
    </message>
    <message>
        <source>USER@HOST; empty: directly</source>
        <translation>USER@HOST; leer: direkt</translation>
    </message>
    <message>
        <source>A host that leads to the robot, by ssh with your keys and agent.</source>
        <translation>Ein Rechner, der zum Roboter führt, über ssh mit Ihren Schlüsseln und Ihrem Agenten.</translation>
    </message>
    <message>
        <source>&amp;By way of:</source>
        <translation>Ü&amp;ber:</translation>
    </message>
    <message>
        <source>A certificate and its key need each other: choose both files, or none.</source>
        <translation>Ein Zertifikat und sein Schlüssel brauchen einander: Wählen Sie beide Dateien oder keine.</translation>
    </message>
    <message>
        <source>The address names the port.</source>
        <translation>Die Adresse nennt den Port.</translation>
    </message>
    <message>
        <source>HOST or HOST:PORT. Of nodes of a cluster, or of sentinels, several with commas between.</source>
        <translation>HOST oder HOST:PORT. Von Knoten eines Clusters oder von Sentinels auch mehrere, durch Kommas getrennt.</translation>
    </message>
    <message>
        <source>&amp;Leads to:</source>
        <translation>&amp;Führt zu:</translation>
    </message>
</context>
<context>
    <name>ConnectionSettings</name>
    <message>
        <source>%1 at %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%1 über %2</translation>
    </message>
    <message>
        <source>ssh says:
%1</source>
        <translation>ssh meldet:
%1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no file with certificates or a key: choose another</source>
        <translation>„%1“ ist keine Datei mit Zertifikaten oder einem Schlüssel: Wählen Sie eine andere</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; is not there: put it right, or choose another</source>
        <translation>die Datei „%1“ ist nicht da: Bringen Sie das in Ordnung, oder wählen Sie eine andere</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; may not be read: put it right, or choose another</source>
        <translation>die Datei „%1“ darf nicht gelesen werden: Bringen Sie das in Ordnung, oder wählen Sie eine andere</translation>
    </message>
    <message>
        <source>ssh leads to one server: give one address and no sentinel, or go there without ssh</source>
        <translation>ssh führt zu einem einzigen Server: Geben Sie eine Adresse und keinen Sentinel an, oder verbinden Sie sich ohne ssh</translation>
    </message>
    <message>
        <source>the name of the robot&apos;s server among its sentinels is too long, or has control characters</source>
        <translation>der Name, unter dem die Sentinels den Server des Roboters kennen, ist zu lang oder hat Steuerzeichen</translation>
    </message>
    <message>
        <source>replicas are those of a cluster, and sentinels lead to a server without one: choose one of them</source>
        <translation>Replikate gehören zu einem Cluster, und Sentinels führen zu einem Server ohne Cluster: Wählen Sie eins von beiden</translation>
    </message>
    <message>
        <source>a replica of %1</source>
        <translation>ein Replikat von %1</translation>
    </message>
</context>
<context>
    <name>ConnectionStore</name>
    <message>
        <source>the robot&apos;s addresses are too long a text</source>
        <translation>die Adressen des Roboters sind ein zu langer Text</translation>
    </message>
</context>
<context>
    <name>ConnectionText</name>
    <message>
        <source>Connected since %1</source>
        <translation>Verbunden seit %1</translation>
    </message>
    <message>
        <source>Refused, lost since %1</source>
        <translation>Abgewiesen, verloren seit %1</translation>
    </message>
    <message>
        <source>Disconnected since %1</source>
        <translation>Getrennt seit %1</translation>
    </message>
    <message>
        <source>Connection lost since %1</source>
        <translation>Verbindung verloren seit %1</translation>
    </message>
    <message>
        <source>Interrupted since %1</source>
        <translation>Unterbrochen seit %1</translation>
    </message>
    <message>
        <source>The connection is not tried again: that would not help, and might lock the account. &quot;Connect again&quot; asks for what was refused.</source>
        <translation>Die Verbindung wird nicht noch einmal versucht: Das würde nicht helfen und könnte das Konto sperren. „Neu verbinden“ fragt nach dem, was abgewiesen wurde.</translation>
    </message>
    <message>
        <source>The connection was closed on request. &quot;Reconnect&quot; opens it again.</source>
        <translation>Die Verbindung wurde auf Wunsch geschlossen. „Wiederverbinden“ öffnet sie wieder.</translation>
    </message>
    <message>
        <source>The connection is tried again and again, until it works.</source>
        <translation>Die Verbindung wird immer wieder versucht, bis sie gelingt.</translation>
    </message>
    <message>
        <source>Panels have stopped fetching: once connected, start it again in each, where it says how it fetches.</source>
        <translation>Die Panels rufen nichts mehr ab: Starten Sie das nach dem Verbinden in jedem neu, dort, wo steht, wie es abruft.</translation>
    </message>
    <message>
        <source>Panels then go on by themselves.</source>
        <translation>Die Panels machen dann von selbst weiter.</translation>
    </message>
    <message>
        <source>Not trying again: %1</source>
        <translation>Kein neuer Versuch: %1</translation>
    </message>
    <message>
        <source>Trying again: %1</source>
        <translation>Neuer Versuch: %1</translation>
    </message>
    <message>
        <source>Refused: </source>
        <translation>Abgewiesen: </translation>
    </message>
    <message>
        <source>Disconnected: </source>
        <translation>Getrennt: </translation>
    </message>
    <message>
        <source>Lost: </source>
        <translation>Verloren: </translation>
    </message>
    <message>
        <source>Interrupted: </source>
        <translation>Unterbrochen: </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Nothing new comes in: values are the last ones that came, and curves drawn since then are no new data.</source>
        <translation>Es kommt nichts Neues an: Die Werte sind die zuletzt eingegangenen, und seither gezeichnete Kurven sind keine neuen Daten.</translation>
    </message>
    <message>
        <source>Panels that were open when the connection was lost have stopped fetching, and show what came before. Start it again in each, where it says how it fetches.</source>
        <translation>Panels, die beim Verlust der Verbindung offen waren, rufen nichts mehr ab und zeigen, was vorher kam. Starten Sie das in jedem neu, dort, wo steht, wie es abruft.</translation>
    </message>
    <message numerus="yes">
        <source>Concerns %1 of %n panels; the others go on.</source>
        <translation>
            <numerusform>Betrifft %1 von %n Panel; die anderen machen weiter.</numerusform>
            <numerusform>Betrifft %1 von %n Panels; die anderen machen weiter.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>No panel opens %1.

Give a configuration that a panel has saved, or a workspace (*.tarvek).</source>
        <translation>Kein Panel öffnet %1.

Geben Sie eine Konfiguration an, die ein Panel gespeichert hat, oder einen Arbeitsbereich (*.tarvek).</translation>
    </message>
    <message>
        <source>There is no panel &quot;%1&quot;. Found: %2</source>
        <translation>Es gibt kein Panel „%1“. Gefunden: %2</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message numerus="yes">
        <source>

%n plug-in(s) could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</source>
        <translation>
            <numerusform>

%n Plug-in konnte nicht geladen werden: „Hilfe“, „Fehlgeschlagene Plug-ins...“ sagt, warum.</numerusform>
            <numerusform>

%n Plug-ins konnten nicht geladen werden: „Hilfe“, „Fehlgeschlagene Plug-ins...“ sagt, warum.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) are running. Quitting ends them; their files are kept.</source>
        <translation>
            <numerusform>%n Aufzeichnung läuft. Beenden beendet auch sie; ihre Datei bleibt erhalten.</numerusform>
            <numerusform>%n Aufzeichnungen laufen. Beenden beendet auch sie; ihre Dateien bleiben erhalten.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and quit</source>
        <translation>&amp;Aufzeichnungen beenden und Programm schließen</translation>
    </message>
</context>
<context>
    <name>DockTitle</name>
    <message>
        <source>Detach or attach the panel</source>
        <translation>Panel ablösen oder andocken</translation>
    </message>
    <message>
        <source>Close the panel</source>
        <translation>Panel schließen</translation>
    </message>
    <message>
        <source>Title of the panel</source>
        <translation>Titel des Panels</translation>
    </message>
    <message>
        <source>Drag to move the panel, double-click to rename it</source>
        <translation>Ziehen verschiebt das Panel, ein Doppelklick benennt es um</translation>
    </message>
</context>
<context>
    <name>EndingQuestion</name>
    <message>
        <source>Recordings are running</source>
        <translation>Aufzeichnungen laufen</translation>
    </message>
</context>
<context>
    <name>ErrorReporter</name>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n weitere in den Details.</numerusform>
            <numerusform>%n weitere in den Details.</numerusform>
        </translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>FileField</name>
    <message>
        <source>PEM files (*.pem *.crt *.key)</source>
        <translation>PEM-Dateien (*.pem *.crt *.key)</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
</context>
<context>
    <name>FileMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New connection...</source>
        <translation>&amp;Neue Verbindung...</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>R&amp;ecord...</source>
        <translation>&amp;Aufzeichnen...</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Wiederverbinden</translation>
    </message>
    <message>
        <source>Wa&amp;it for the robot...</source>
        <translation>Auf den &amp;Roboter warten...</translation>
    </message>
    <message>
        <source>&amp;Close panel</source>
        <translation>Panel s&amp;chließen</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>Close &amp;window</source>
        <translation>&amp;Fenster schließen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+W</source>
        <translation>Ctrl+Shift+W</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>B&amp;eenden</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
</context>
<context>
    <name>FindBar</name>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Find in the table</source>
        <translation>In der Tabelle suchen</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Voriger Treffer</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Nächster Treffer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>In diesem Panel gibt es keine Tabelle.</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message numerus="yes">
        <source>%n match(es), %1 % searched</source>
        <translation>
            <numerusform>%n Treffer, %1 % durchsucht</numerusform>
            <numerusform>%n Treffer, %1 % durchsucht</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n match(es)</source>
        <translation>
            <numerusform>%n Treffer</numerusform>
            <numerusform>%n Treffer</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Guide</name>
    <message>
        <source>The guide is not there: %1 is missing or cannot be read. Install the program&apos;s documents, too.</source>
        <translation>Das Handbuch ist nicht da: %1 fehlt oder kann nicht gelesen werden. Installieren Sie auch die Dokumente des Programms.</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>Handbuch</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>Hand&amp;buch</translation>
    </message>
    <message>
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message>
        <source>&amp;Shortcuts...</source>
        <translation>&amp;Tastenkürzel...</translation>
    </message>
    <message>
        <source>&amp;Plug-ins that failed (%1)...</source>
        <translation>Fehlgeschlagene &amp;Plug-ins (%1)...</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostics</source>
        <translation>&amp;Diagnosedaten kopieren</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über</translation>
    </message>
    <message>
        <source>Copied: paste it into your report</source>
        <translation>Kopiert: Fügen Sie es in Ihren Bericht ein</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>%1 %2

Shows tool panels for robots on the network.</source>
        <translation>%1 %2

Zeigt Werkzeug-Panels für Roboter im Netz.</translation>
    </message>
</context>
<context>
    <name>KeptPasswords</name>
    <message>
        <source>The password is not kept: %1</source>
        <translation>Das Passwort wird nicht aufbewahrt: %1</translation>
    </message>
</context>
<context>
    <name>LossLimitDialog</name>
    <message>
        <source>Wait for the robot</source>
        <translation>Auf den Roboter warten</translation>
    </message>
    <message>
        <source>Minutes that panels wait for a robot that is away before they give up (0: none):</source>
        <translation>Minuten, die Panels auf einen Roboter warten, der weg ist, bevor sie aufgeben (0: keine):</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message numerus="yes">
        <source>%1 (%n panel(s)). %2</source>
        <translation>
            <numerusform>%1 (%n Panel). %2</numerusform>
            <numerusform>%1 (%n Panels). %2</numerusform>
        </translation>
    </message>
    <message>
        <source>The start-up dialog of another panel is still open.</source>
        <translation>Der Startdialog eines anderen Panels ist noch offen.</translation>
    </message>
    <message>
        <source>The error does not describe itself.</source>
        <translation>Der Fehler beschreibt sich nicht selbst.</translation>
    </message>
    <message>
        <source>The panel &quot;%1&quot; cannot be opened.

%2</source>
        <translation>Das Panel „%1“ kann nicht geöffnet werden.

%2</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>NodesField</name>
    <message>
        <source>the robot&apos;s server or cluster</source>
        <translation>dem Server oder Cluster des Roboters</translation>
    </message>
    <message>
        <source>a replica in its cluster</source>
        <translation>einem Replikat in seinem Cluster</translation>
    </message>
    <message>
        <source>sentinels of</source>
        <translation>Sentinels von</translation>
    </message>
    <message>
        <source>What the address leads to</source>
        <translation>Wohin die Adresse führt</translation>
    </message>
    <message>
        <source>A replica takes work off the node that is written to; its values may be late. Sentinels know which of several servers is the robot&apos;s.</source>
        <translation>Ein Replikat entlastet den Knoten, auf den geschrieben wird; seine Werte können verspätet sein. Sentinels wissen, welcher von mehreren Servern der des Roboters ist.</translation>
    </message>
    <message>
        <source>Name of the server</source>
        <translation>Name des Servers</translation>
    </message>
    <message>
        <source>the server&apos;s name</source>
        <translation>der Name des Servers</translation>
    </message>
    <message>
        <source>Sentinels watch several servers: say what they call the robot&apos;s, or choose what else the address leads to.</source>
        <translation>Sentinels überwachen mehrere Server: Geben Sie an, wie sie den des Roboters nennen, oder wählen Sie, wohin die Adresse sonst führt.</translation>
    </message>
</context>
<context>
    <name>OutageBar</name>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>Do not wait for the robot any longer</source>
        <translation>Nicht länger auf den Roboter warten</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Wiederverbinden</translation>
    </message>
    <message>
        <source>Open the connection again, at once</source>
        <translation>Die Verbindung sofort wieder öffnen</translation>
    </message>
    <message>
        <source>Connect &amp;again...</source>
        <translation>&amp;Neu verbinden...</translation>
    </message>
    <message>
        <source>Give the user, password or certificates that the robot wants</source>
        <translation>Benutzer, Passwort oder Zertifikate angeben, die der Roboter verlangt</translation>
    </message>
    <message>
        <source>&amp;Understood</source>
        <translation>&amp;Verstanden</translation>
    </message>
    <message>
        <source>Hide this</source>
        <translation>Dies ausblenden</translation>
    </message>
</context>
<context>
    <name>PanelCommands</name>
    <message>
        <source>&amp;Save picture...</source>
        <translation>Bild &amp;speichern...</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Save &amp;table as CSV...</source>
        <translation>Tabelle als CS&amp;V speichern...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>&amp;Copy cell</source>
        <translation>Zelle &amp;kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;row</source>
        <translation>&amp;Zeile kopieren</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Copy &amp;all</source>
        <translation>&amp;Alles kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;picture</source>
        <translation>&amp;Bild kopieren</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Suchen...</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>&amp;Weitersuchen</translation>
    </message>
    <message>
        <source>F3</source>
        <translation>F3</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>&amp;Rückwärts suchen</translation>
    </message>
    <message>
        <source>Shift+F3</source>
        <translation>Shift+F3</translation>
    </message>
    <message>
        <source>&amp;Next panel</source>
        <translation>&amp;Nächstes Panel</translation>
    </message>
    <message>
        <source>Ctrl+Tab</source>
        <translation>Ctrl+Tab</translation>
    </message>
    <message>
        <source>&amp;Previous panel</source>
        <translation>&amp;Voriges Panel</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Tab</source>
        <translation>Ctrl+Shift+Tab</translation>
    </message>
    <message>
        <source>&amp;Detach or attach</source>
        <translation>&amp;Ablösen oder andocken</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Umbenennen...</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>In diesem Panel gibt es keine Tabelle.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 wurde gespeichert</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Picture (*.png)</source>
        <translation>Bild (*.png)</translation>
    </message>
    <message>
        <source>Document, sharp at any size (*.pdf)</source>
        <translation>Dokument, scharf in jeder Größe (*.pdf)</translation>
    </message>
    <message>
        <source>Save table</source>
        <translation>Tabelle speichern</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>Kommagetrennte Werte (*.csv)</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
</context>
<context>
    <name>PanelDocks</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>PanelMaker</name>
    <message>
        <source>Its start-up dialog is still open.</source>
        <translation>Sein Startdialog ist noch offen.</translation>
    </message>
    <message>
        <source>Open the panel again when the robot is connected.</source>
        <translation>Öffnen Sie das Panel noch einmal, wenn der Roboter verbunden ist.</translation>
    </message>
    <message>
        <source>The robot is not connected yet.</source>
        <translation>Der Roboter ist noch nicht verbunden.</translation>
    </message>
</context>
<context>
    <name>PanelMenu</name>
    <message>
        <source>&amp;Panels</source>
        <translation>&amp;Panels</translation>
    </message>
    <message>
        <source>(none found)</source>
        <translation>(keine gefunden)</translation>
    </message>
</context>
<context>
    <name>Picture</name>
    <message>
        <source>The picture cannot be saved as %1: let the name end in .png or .pdf.</source>
        <translation>Das Bild kann nicht als %1 gespeichert werden: Lassen Sie den Namen auf .png oder .pdf enden.</translation>
    </message>
    <message>
        <source>There is nothing in the picture to save.</source>
        <translation>Im Bild ist nichts, was gespeichert werden könnte.</translation>
    </message>
</context>
<context>
    <name>PluginFailuresDialog</name>
    <message>
        <source>Plug-ins that failed</source>
        <translation>Fehlgeschlagene Plug-ins</translation>
    </message>
    <message>
        <source>Looked in: %1</source>
        <translation>Gesucht in: %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Every plug-in was loaded.</source>
        <translation>Alle Plug-ins wurden geladen.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
</context>
<context>
    <name>PluginLoader</name>
    <message>
        <source>It is no plug-in: %1</source>
        <translation>Es ist kein Plug-in: %1</translation>
    </message>
    <message>
        <source>It offers the interface &quot;%1&quot;, but panels have &quot;%2&quot;. Get a version made for this program.</source>
        <translation>Es bietet die Schnittstelle „%1“, aber Panels haben „%2“. Besorgen Sie eine Version für dieses Programm.</translation>
    </message>
    <message>
        <source>It is loaded, but makes no plug-in object.</source>
        <translation>Es ist geladen, erzeugt aber kein Plug-in-Objekt.</translation>
    </message>
    <message>
        <source>Its plug-in object (%1) has no panel interface.</source>
        <translation>Sein Plug-in-Objekt (%1) hat keine Panel-Schnittstelle.</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>Diesen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>Diese Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>It failed in a way it does not describe.</source>
        <translation>Es ist auf eine Weise fehlgeschlagen, die es nicht beschreibt.</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>It is no plug-in: the file is empty.</source>
        <translation>Es ist kein Plug-in: Die Datei ist leer.</translation>
    </message>
    <message>
        <source>It was built with Qt %1, and this program with Qt %2. Get a version made for this program.</source>
        <translation>Es wurde mit Qt %1 gebaut, dieses Programm mit Qt %2. Besorgen Sie eine Version für dieses Programm.</translation>
    </message>
</context>
<context>
    <name>Recording</name>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>%1 kann nicht gestartet werden: %2</translation>
    </message>
    <message>
        <source>The recording of %1 has ended, with warnings.</source>
        <translation>Die Aufzeichnung von %1 ist mit Warnungen zu Ende gegangen.</translation>
    </message>
    <message>
        <source>The recording of %1 has ended with an error (exit status %2).</source>
        <translation>Die Aufzeichnung von %1 ist mit einem Fehler zu Ende gegangen (Rückgabewert %2).</translation>
    </message>
    <message>
        <source>The recording of %1 did not end within %2 s, and was killed.</source>
        <translation>Die Aufzeichnung von %1 endete nicht innerhalb von %2 s und wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The recording of %1 was killed, or crashed.</source>
        <translation>Die Aufzeichnung von %1 wurde abgebrochen oder ist abgestürzt.</translation>
    </message>
    <message>
        <source>File: %1</source>
        <translation>Datei: %1</translation>
    </message>
</context>
<context>
    <name>RecordingBar</name>
    <message>
        <source>Recordings</source>
        <translation>Aufzeichnungen</translation>
    </message>
</context>
<context>
    <name>RecordingDialog</name>
    <message>
        <source>Configuration files (*.xml);;All files (*)</source>
        <translation>Konfigurationsdateien (*.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv);;All files (*)</source>
        <translation>Kommagetrennte Werte (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Record %1</source>
        <translation>%1 aufzeichnen</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Aufzeichnen</translation>
    </message>
    <message>
        <source>What a &amp;configuration file watches:</source>
        <translation>Was eine &amp;Konfigurationsdatei beobachtet:</translation>
    </message>
    <message>
        <source>Configuration file</source>
        <translation>Konfigurationsdatei</translation>
    </message>
    <message>
        <source>a file that a panel has saved</source>
        <translation>eine Datei, die ein Panel gespeichert hat</translation>
    </message>
    <message>
        <source>These &amp;keys, one a line:</source>
        <translation>Diese &amp;Schlüssel, einer je Zeile:</translation>
    </message>
    <message>
        <source>&amp;All keys that the robot has at the start</source>
        <translation>Alle Schlüssel, die &amp;der Roboter am Anfang hat</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>Only what c&amp;hanged: a row for each value</source>
        <translation>Nur was sich ä&amp;ndert: eine Zeile für jeden Wert</translation>
    </message>
    <message>
        <source>Call col&amp;umns by keys, not by aliases</source>
        <translation>S&amp;palten nach Schlüsseln benennen, nicht nach Aliasnamen</translation>
    </message>
    <message>
        <source>So that a robot that plays the recording has these keys</source>
        <translation>Damit ein Roboter, der die Aufzeichnung abspielt, diese Schlüssel hat</translation>
    </message>
    <message>
        <source>An empty row where the robot was &amp;lost</source>
        <translation>Eine &amp;leere Zeile, wo der Roboter verloren war</translation>
    </message>
    <message>
        <source>A row e&amp;very:</source>
        <translation>Eine &amp;Zeile alle:</translation>
    </message>
    <message>
        <source>File to record into</source>
        <translation>Datei für die Aufzeichnung</translation>
    </message>
    <message>
        <source>Another &amp;file every</source>
        <translation>Eine andere Datei all&amp;e</translation>
    </message>
    <message>
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message>
        <source>GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>&amp;Into:</source>
        <translation>&amp;In:</translation>
    </message>
    <message>
        <source>Choose a configuration file, or say otherwise what to record.</source>
        <translation>Wählen Sie eine Konfigurationsdatei, oder geben Sie anders an, was aufzuzeichnen ist.</translation>
    </message>
    <message>
        <source>There is no file %1. Choose one that a panel has saved.</source>
        <translation>Es gibt keine Datei %1. Wählen Sie eine, die ein Panel gespeichert hat.</translation>
    </message>
    <message>
        <source>Enter the keys to record, one a line.</source>
        <translation>Geben Sie die aufzuzeichnenden Schlüssel ein, einen je Zeile.</translation>
    </message>
    <message>
        <source>Choose the file to record into.</source>
        <translation>Wählen Sie die Datei für die Aufzeichnung.</translation>
    </message>
    <message>
        <source>%1 is a folder. Add the name of the file to record into.</source>
        <translation>%1 ist ein Ordner. Fügen Sie den Namen der Datei für die Aufzeichnung hinzu.</translation>
    </message>
    <message>
        <source>The file is there already</source>
        <translation>Die Datei ist schon da</translation>
    </message>
    <message>
        <source>%1 is there already. Go on behind its last row? It is never replaced; if it is no recording of the same columns, it is left as it is, and nothing is recorded.</source>
        <translation>%1 ist schon da. Hinter der letzten Zeile weitermachen? Die Datei wird nie ersetzt; ist sie keine Aufzeichnung mit denselben Spalten, bleibt sie, wie sie ist, und nichts wird aufgezeichnet.</translation>
    </message>
    <message>
        <source>&amp;Go on behind it</source>
        <translation>Da&amp;hinter weitermachen</translation>
    </message>
</context>
<context>
    <name>RecordingPlan</name>
    <message>
        <source>The program zo-record, which records, is missing. Install the package zo-record, or put the program beside tarvek-desktop, or into a folder of PATH.</source>
        <translation>Das Programm zo-record, das aufzeichnet, fehlt. Installieren Sie das Paket zo-record, oder legen Sie das Programm neben tarvek-desktop oder in einen Ordner aus PATH.</translation>
    </message>
</context>
<context>
    <name>RecordingRow</name>
    <message>
        <source>Stop</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>End this recording; its file is kept</source>
        <translation>Diese Aufzeichnung beenden; ihre Datei bleibt erhalten</translation>
    </message>
    <message>
        <source>is being ended</source>
        <translation>wird beendet</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1, from %2</source>
        <translation>%1, von %2</translation>
    </message>
    <message>
        <source>Stop recording %1</source>
        <translation>Die Aufzeichnung %1 beenden</translation>
    </message>
</context>
<context>
    <name>RecordingState</name>
    <message>
        <source>starting</source>
        <translation>startet</translation>
    </message>
    <message>
        <source>waits for the robot</source>
        <translation>wartet auf den Roboter</translation>
    </message>
    <message numerus="yes">
        <source>%1 rows</source>
        <translation>
            <numerusform>%1 Zeile</numerusform>
            <numerusform>%1 Zeilen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 polls missed</source>
        <translation>
            <numerusform>%1 Abfrage versäumt</numerusform>
            <numerusform>%1 Abfragen versäumt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 values too large</source>
        <translation>
            <numerusform>%1 Wert zu groß</numerusform>
            <numerusform>%1 Werte zu groß</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>%1 frei</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>keys without a value: %1</source>
        <translation>Schlüssel ohne Wert: %1</translation>
    </message>
</context>
<context>
    <name>Recordings</name>
    <message>
        <source>The password of this robot has a line break, which the recorder cannot be given. Give the robot&apos;s user another password, or connect as another user.</source>
        <translation>Das Passwort dieses Roboters hat einen Zeilenumbruch, den das Aufzeichnungsprogramm nicht erhalten kann. Geben Sie dem Benutzer des Roboters ein anderes Passwort, oder verbinden Sie sich als ein anderer Benutzer.</translation>
    </message>
    <message numerus="yes">
        <source>%n recordings are running in this window: end one of them first.</source>
        <translation>
            <numerusform>In diesem Fenster läuft %n Aufzeichnung: Beenden Sie sie zuerst.</numerusform>
            <numerusform>In diesem Fenster laufen %n Aufzeichnungen: Beenden Sie zuerst eine davon.</numerusform>
        </translation>
    </message>
    <message>
        <source>Recorded %1: %2</source>
        <translation>%1 aufgezeichnet: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) of this window are running. Closing it ends them; their files are kept.</source>
        <translation>
            <numerusform>%n Aufzeichnung dieses Fensters läuft. Schließen beendet sie; ihre Datei bleibt erhalten.</numerusform>
            <numerusform>%n Aufzeichnungen dieses Fensters laufen. Schließen beendet sie; ihre Dateien bleiben erhalten.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and close</source>
        <translation>&amp;Aufzeichnungen beenden und Fenster schließen</translation>
    </message>
</context>
<context>
    <name>RobotList</name>
    <message>
        <source>Robots that you have saved. A double click renames one.</source>
        <translation>Roboter, die Sie gespeichert haben. Ein Doppelklick benennt einen um.</translation>
    </message>
    <message>
        <source>Sa&amp;ved robots:</source>
        <translation>&amp;Gespeicherte Roboter:</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Delete...</source>
        <translation>Löschen...</translation>
    </message>
    <message>
        <source>Delete a robot</source>
        <translation>Einen Roboter löschen</translation>
    </message>
    <message>
        <source>Delete the saved robot &quot;%1&quot;?</source>
        <translation>Den gespeicherten Roboter „%1“ löschen?</translation>
    </message>
</context>
<context>
    <name>RobotOpening</name>
    <message>
        <source>The way there is not encrypted: whoever listens on it can read the password.</source>
        <translation>Der Weg dorthin ist nicht verschlüsselt: Wer dort mithört, kann das Passwort lesen.</translation>
    </message>
    <message>
        <source>The way from %1 on is not encrypted: whoever listens on it can read the password.</source>
        <translation>Der Weg ab %1 ist nicht verschlüsselt: Wer dort mithört, kann das Passwort lesen.</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Password for the robot %1:</source>
        <translation>Passwort für den Roboter %1:</translation>
    </message>
    <message>
        <source>Password of &quot;%1&quot; for the robot %2:</source>
        <translation>Passwort von „%1“ für den Roboter %2:</translation>
    </message>
</context>
<context>
    <name>SavedFile</name>
    <message>
        <source>%1 cannot be saved: %2</source>
        <translation>%1 kann nicht gespeichert werden: %2</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>What they do</source>
        <translation>Wirkung</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Next match, in the bar to find with</source>
        <translation>Nächster Treffer, in der Suchleiste</translation>
    </message>
    <message>
        <source>Shift+Return</source>
        <translation>Umschalt+Eingabe</translation>
    </message>
    <message>
        <source>Previous match, there</source>
        <translation>Voriger Treffer, ebenda</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Close the bar, or give a title its old text</source>
        <translation>Die Leiste schließen, oder einem Titel seinen alten Text geben</translation>
    </message>
</context>
<context>
    <name>SshQuestion</name>
    <message>
        <source>ssh asks</source>
        <translation>ssh fragt</translation>
    </message>
</context>
<context>
    <name>SshRelay</name>
    <message>
        <source>&apos;%1&apos; is no host for ssh: write USER@HOST, as in pilot@gate-3, or a name that ssh&apos;s configuration knows</source>
        <translation>„%1“ ist kein Rechner für ssh: Schreiben Sie USER@HOST, etwa pilot@gate-3, oder einen Namen, den die Konfiguration von ssh kennt</translation>
    </message>
    <message>
        <source>the folder for temporary files has too long a name: %1</source>
        <translation>der Ordner für temporäre Dateien hat einen zu langen Namen: %1</translation>
    </message>
</context>
<context>
    <name>StartPage</name>
    <message>
        <source>Choose a panel:</source>
        <translation>Wählen Sie ein Panel:</translation>
    </message>
    <message>
        <source>

Some files could not be used: see &quot;Help&quot;, &quot;Plug-ins that failed&quot;.</source>
        <translation>

Einige Dateien waren nicht zu gebrauchen: siehe „Hilfe“, „Fehlgeschlagene Plug-ins“.</translation>
    </message>
    <message>
        <source>No panel was found. Panels were looked for in:
%1

Start the program with --plugin-dir DIR or --plugin FILE to say where they are.</source>
        <translation>Es wurde kein Panel gefunden. Gesucht wurde in:
%1

Starten Sie das Programm mit --plugin-dir DIR oder --plugin FILE, um anzugeben, wo sie sind.</translation>
    </message>
</context>
<context>
    <name>TrafficText</name>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 ms ago</source>
        <translation>vor %1 ms</translation>
    </message>
    <message>
        <source>%1 s ago</source>
        <translation>vor %1 s</translation>
    </message>
    <message>
        <source>%1 min ago</source>
        <translation>vor %1 min</translation>
    </message>
    <message>
        <source>%1 h ago</source>
        <translation>vor %1 h</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>changes only</source>
        <translation>nur Änderungen</translation>
    </message>
    <message>
        <source>everything</source>
        <translation>alles</translation>
    </message>
    <message>
        <source>the robot tells what was written, and only that is read</source>
        <translation>der Roboter meldet, was geschrieben wurde, und nur das wird gelesen</translation>
    </message>
    <message>
        <source>every value is read each time</source>
        <translation>jeder Wert wird jedes Mal gelesen</translation>
    </message>
    <message>
        <source>no values are followed</source>
        <translation>keine Werte werden verfolgt</translation>
    </message>
    <message>
        <source>%1 answers/s</source>
        <translation>%1 Antworten/s</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>noch keine</translation>
    </message>
    <message>
        <source>Round trip: %1</source>
        <translation>Umlaufzeit: %1</translation>
    </message>
    <message>
        <source>Newest answer: %1</source>
        <translation>Neueste Antwort: %1</translation>
    </message>
    <message>
        <source>Answers: %1/s</source>
        <translation>Antworten: %1/s</translation>
    </message>
    <message>
        <source>Received: %1</source>
        <translation>Empfangen: %1</translation>
    </message>
    <message>
        <source>Sent: %1</source>
        <translation>Gesendet: %1</translation>
    </message>
    <message>
        <source>Following: %1</source>
        <translation>Verfolgung: %1</translation>
    </message>
</context>
<context>
    <name>WorkspaceFile</name>
    <message>
        <source>it is no file</source>
        <translation>das ist keine Datei</translation>
    </message>
    <message>
        <source>it is larger than %1 MiB</source>
        <translation>die Datei ist größer als %1 MiB</translation>
    </message>
    <message>
        <source>The workspace %1 cannot be opened: %2.

Choose a file that &quot;Save workspace&quot; wrote.</source>
        <translation>Der Arbeitsbereich %1 kann nicht geöffnet werden: %2.

Wählen Sie eine Datei, die „Arbeitsbereich speichern“ geschrieben hat.</translation>
    </message>
    <message>
        <source>it would be larger than %1 MiB</source>
        <translation>die Datei wäre größer als %1 MiB</translation>
    </message>
    <message>
        <source>%1 cannot be saved: %2.</source>
        <translation>%1 kann nicht gespeichert werden: %2.</translation>
    </message>
</context>
<context>
    <name>WorkspaceMenu</name>
    <message>
        <source>&amp;Open workspace...</source>
        <translation>Arbeitsbereich &amp;öffnen...</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Recent wor&amp;kspaces</source>
        <translation>&amp;Zuletzt verwendete Arbeitsbereiche</translation>
    </message>
    <message>
        <source>Sa&amp;ve workspace...</source>
        <translation>Arbeitsbereich s&amp;peichern...</translation>
    </message>
    <message>
        <source>Ctrl+Alt+S</source>
        <translation>Ctrl+Alt+S</translation>
    </message>
</context>
<context>
    <name>WorkspaceOpening</name>
    <message>
        <source>Robot %1: %2</source>
        <translation>Roboter %1: %2</translation>
    </message>
    <message>
        <source>Not all of the workspace could be opened:

%1</source>
        <translation>Der Arbeitsbereich konnte nicht ganz geöffnet werden:

%1</translation>
    </message>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n weitere in den Details.</numerusform>
            <numerusform>%n weitere in den Details.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Connecting to
%1</source>
        <translation>Verbinden mit
%1</translation>
    </message>
    <message>
        <source>%1: not tried to the end</source>
        <translation>%1: nicht bis zum Ende versucht</translation>
    </message>
    <message>
        <source>Panel &quot;%1&quot; of %2: there is no such plug-in here. &quot;Help&quot;, &quot;Plug-ins that failed...&quot; may say why.</source>
        <translation>Panel „%1“ von %2: Dieses Plug-in gibt es hier nicht. „Hilfe“, „Fehlgeschlagene Plug-ins...“ sagt vielleicht, warum.</translation>
    </message>
    <message>
        <source>Try &amp;again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>&amp;Leave out panels without a plug-in when the workspace is saved again</source>
        <translation>Panels ohne Plug-in &amp;weglassen, wenn der Arbeitsbereich wieder gespeichert wird</translation>
    </message>
</context>
<context>
    <name>WorkspaceText</name>
    <message>
        <source>&quot;%1&quot; is no text, or too long</source>
        <translation>„%1“ ist kein Text oder zu lang</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has characters that no text of one line has</source>
        <translation>„%1“ hat Zeichen, die kein Text aus einer Zeile hat</translation>
    </message>
    <message>
        <source>no plug-in is named</source>
        <translation>es wird kein Plug-in genannt</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>more than %1 panels</source>
        <translation>mehr als %1 Panels</translation>
    </message>
    <message>
        <source>%1, panel %2</source>
        <translation>%1, Panel %2</translation>
    </message>
    <message>
        <source>the window of %1</source>
        <translation>das Fenster von %1</translation>
    </message>
    <message>
        <source>it has more than %1 windows</source>
        <translation>er hat mehr als %1 Fenster</translation>
    </message>
    <message>
        <source>it is no JSON: %1, at byte %2</source>
        <translation>es ist kein JSON: %1, bei Byte %2</translation>
    </message>
    <message>
        <source>it is no workspace of this program</source>
        <translation>es ist kein Arbeitsbereich dieses Programms</translation>
    </message>
    <message>
        <source>Window %1</source>
        <translation>Fenster %1</translation>
    </message>
    <message>
        <source>a newer version wrote it, and this one does not understand it: choose another file</source>
        <translation>eine neuere Version hat ihn geschrieben, und diese versteht ihn nicht: Wählen Sie eine andere Datei</translation>
    </message>
</context>
<context>
    <name>Workspaces</name>
    <message>
        <source>Workspaces (*.tarvek)</source>
        <translation>Arbeitsbereiche (*.tarvek)</translation>
    </message>
    <message>
        <source>Open workspace</source>
        <translation>Arbeitsbereich öffnen</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save workspace</source>
        <translation>Arbeitsbereich speichern</translation>
    </message>
    <message>
        <source>The workspace is saved in %1</source>
        <translation>Der Arbeitsbereich ist in %1 gespeichert</translation>
    </message>
    <message>
        <source>A workspace is being opened already</source>
        <translation>Es wird schon ein Arbeitsbereich geöffnet</translation>
    </message>
</context>
</TS>
