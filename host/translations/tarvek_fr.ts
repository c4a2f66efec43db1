<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>Application</name>
    <message>
        <source>An error that does not describe itself.</source>
        <translation>Une erreur sans description.</translation>
    </message>
</context>
<context>
    <name>CheckDialog</name>
    <message>
        <source>ok</source>
        <translation>réussi</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>échoué</translation>
    </message>
    <message>
        <source>skipped</source>
        <translation>ignoré</translation>
    </message>
    <message>
        <source>look-up</source>
        <translation>recherche de l&apos;adresse</translation>
    </message>
    <message>
        <source>connection</source>
        <translation>connexion</translation>
    </message>
    <message>
        <source>encryption</source>
        <translation>chiffrement</translation>
    </message>
    <message>
        <source>answer</source>
        <translation>réponse</translation>
    </message>
    <message>
        <source>readiness</source>
        <translation>disponibilité</translation>
    </message>
    <message>
        <source>login</source>
        <translation>identification</translation>
    </message>
    <message>
        <source>node</source>
        <translation>nœud</translation>
    </message>
    <message>
        <source>rights</source>
        <translation>droits</translation>
    </message>
    <message>
        <source>server</source>
        <translation>serveur</translation>
    </message>
    <message>
        <source>keys</source>
        <translation>clés</translation>
    </message>
    <message>
        <source>round trip</source>
        <translation>aller-retour</translation>
    </message>
    <message>
        <source>notices</source>
        <translation>notifications</translation>
    </message>
    <message>
        <source>Check the name, or enter the address itself.</source>
        <translation>Vérifiez le nom, ou saisissez l&apos;adresse elle-même.</translation>
    </message>
    <message>
        <source>Is the robot on, does its memory listen to this network at this port, and does no firewall stand between?</source>
        <translation>Le robot est-il allumé, sa mémoire écoute-t-elle sur ce réseau à ce port, et aucun pare-feu ne fait-il obstacle&#xa0;?</translation>
    </message>
    <message>
        <source>Does the robot speak TLS at this port? Is the file of authorities that of the one who signed its certificate?</source>
        <translation>Le robot utilise-t-il TLS sur ce port&#xa0;? Le fichier d&apos;autorités est-il celui de l&apos;autorité qui a signé son certificat&#xa0;?</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, and does it want to see a certificate?</source>
        <translation>Est-ce bien la mémoire d&apos;un robot, et demande-t-elle un certificat&#xa0;?</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, does it hang, or does it want encryption?</source>
        <translation>Est-ce bien la mémoire d&apos;un robot, est-elle bloquée, ou exige-t-elle le chiffrement&#xa0;?</translation>
    </message>
    <message>
        <source>Try again in a while.</source>
        <translation>Réessayez dans un moment.</translation>
    </message>
    <message>
        <source>Check user and password.</source>
        <translation>Vérifiez l&apos;utilisateur et le mot de passe.</translation>
    </message>
    <message>
        <source>The robot&apos;s access list must allow this user SCAN, MGET, and to read the keys.</source>
        <translation>La liste d&apos;accès du robot doit autoriser à cet utilisateur SCAN, MGET et la lecture des clés.</translation>
    </message>
    <message>
        <source>Test of %1</source>
        <translation>Test de %1</translation>
    </message>
    <message>
        <source>Looking up the address...</source>
        <translation>Recherche de l&apos;adresse...</translation>
    </message>
    <message>
        <source>%1 - %2: %3</source>
        <translation>%1 - %2&#xa0;: %3</translation>
    </message>
    <message>
        <source>
All that a panel needs works.</source>
        <translation>
Tout ce dont un panneau a besoin fonctionne.</translation>
    </message>
    <message>
        <source>
A panel would not work with this robot.</source>
        <translation>
Un panneau ne fonctionnerait pas avec ce robot.</translation>
    </message>
</context>
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Connect to a robot</source>
        <translation>Connexion à un robot</translation>
    </message>
    <message>
        <source>&amp;Test...</source>
        <translation>&amp;Tester...</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>Enre&amp;gistrer...</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Connecter</translation>
    </message>
    <message>
        <source>Save the robot</source>
        <translation>Enregistrer le robot</translation>
    </message>
    <message>
        <source>Name of the robot. One that has this name already is replaced.</source>
        <translation>Nom du robot. Un robot qui porte déjà ce nom est remplacé.</translation>
    </message>
</context>
<context>
    <name>Connecting</name>
    <message>
        <source>asking the desktop&apos;s keyring for the password</source>
        <translation>demande du mot de passe au trousseau du bureau</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Connexion à %1...</translation>
    </message>
    <message>
        <source>Connecting to %1: %2...</source>
        <translation>Connexion à %1&#xa0;: %2...</translation>
    </message>
    <message>
        <source>There is no connection to %1.

%2

Check the address and the port, what the robot asks for (user, password, encryption), and whether it is on.</source>
        <translation>Il n&apos;y a pas de connexion à %1.

%2

Vérifiez l&apos;adresse et le port, ce que le robot demande (utilisateur, mot de passe, chiffrement), et s&apos;il est allumé.</translation>
    </message>
</context>
<context>
    <name>ConnectionAttempt</name>
    <message>
        <source>looking up the address</source>
        <translation>recherche de l&apos;adresse</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>connexion</translation>
    </message>
    <message>
        <source>setting up the encryption</source>
        <translation>mise en place du chiffrement</translation>
    </message>
    <message>
        <source>logging in</source>
        <translation>identification</translation>
    </message>
    <message>
        <source>trying</source>
        <translation>tentative en cours</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%1 via %2</translation>
    </message>
</context>
<context>
    <name>ConnectionForm</name>
    <message>
        <source>%1 as %2</source>
        <translation>%1 en tant que %2</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse&#xa0;:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>sans</translation>
    </message>
    <message>
        <source>What the robot&apos;s keys begin with on a server of many robots, as robot7/. Keys are shown without it.</source>
        <translation>Ce par quoi commencent les clés du robot sur un serveur de plusieurs robots, comme robot7/. Les clés sont affichées sans cela.</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port&#xa0;:</translation>
    </message>
    <message>
        <source>Prefi&amp;x:</source>
        <translation>Préfi&amp;xe&#xa0;:</translation>
    </message>
    <message>
        <source>the default user</source>
        <translation>l&apos;utilisateur par défaut</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Utilisateur&#xa0;:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>&amp;Mot de passe&#xa0;:</translation>
    </message>
    <message>
        <source>Keep it in the desktop&apos;s keyri&amp;ng</source>
        <translation>Le co&amp;nserver dans le trousseau du bureau</translation>
    </message>
    <message>
        <source>&amp;Encrypt (TLS)</source>
        <translation>C&amp;hiffrer (TLS)</translation>
    </message>
    <message>
        <source>File of authorities</source>
        <translation>Fichier d&apos;autorités</translation>
    </message>
    <message>
        <source>those of the system</source>
        <translation>celles du système</translation>
    </message>
    <message>
        <source>Certificate to show</source>
        <translation>Certificat à présenter</translation>
    </message>
    <message>
        <source>Key of the certificate</source>
        <translation>Clé du certificat</translation>
    </message>
    <message>
        <source>Auth&amp;orities:</source>
        <translation>Aut&amp;orités&#xa0;:</translation>
    </message>
    <message>
        <source>Ce&amp;rtificate:</source>
        <translation>Ce&amp;rtificat&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Key:</source>
        <translation>C&amp;lé&#xa0;:</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>for a local network</source>
        <translation>pour un réseau local</translation>
    </message>
    <message>
        <source>The longest wait for a connection, and for an answer. A slow network needs more.</source>
        <translation>L&apos;attente la plus longue d&apos;une connexion et d&apos;une réponse. Un réseau lent en demande davantage.</translation>
    </message>
    <message>
        <source>T&amp;ime-out:</source>
        <translation>Déla&amp;i d&apos;attente&#xa0;:</translation>
    </message>
    <message>
        <source>USER@HOST; empty: directly</source>
        <translation>USER@HOST&#xa0;; vide&#xa0;: directement</translation>
    </message>
    <message>
        <source>A host that leads to the robot, by ssh with your keys and agent.</source>
        <translation>Une machine qui mène au robot, par ssh avec vos clés et votre agent.</translation>
    </message>
    <message>
        <source>&amp;By way of:</source>
        <translation>&amp;Via&#xa0;:</translation>
    </message>
    <message>
        <source>A certificate and its key need each other: choose both files, or none.</source>
        <translation>Un certificat et sa clé vont ensemble&#xa0;: choisissez les deux fichiers, ou aucun.</translation>
    </message>
    <message>
        <source>The address names the port.</source>
        <translation>L&apos;adresse indique le port.</translation>
    </message>
    <message>
        <source>HOST or HOST:PORT. Of nodes of a cluster, or of sentinels, several with commas between.</source>
        <translation>HOST ou HOST:PORT. Pour les nœuds d&apos;une grappe ou les sentinelles, plusieurs, séparées par des virgules.</translation>
    </message>
    <message>
        <source>&amp;Leads to:</source>
        <translation>Mèn&amp;e à&#xa0;:</translation>
    </message>
</context>
<context>
    <name>ConnectionSettings</name>
    <message>
        <source>%1 at %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%1 via %2</translation>
    </message>
    <message>
        <source>ssh says:
%1</source>
        <translation>ssh indique&#xa0;:
%1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no file with certificates or a key: choose another</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas un fichier de certificats ou de clé&#xa0;: choisissez-en un autre</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; is not there: put it right, or choose another</source>
        <translation>le fichier «&#xa0;%1&#xa0;» n&apos;existe pas&#xa0;: rétablissez-le, ou choisissez-en un autre</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; may not be read: put it right, or choose another</source>
        <translation>le fichier «&#xa0;%1&#xa0;» ne peut pas être lu&#xa0;: corrigez cela, ou choisissez-en un autre</translation>
    </message>
    <message>
        <source>ssh leads to one server: give one address and no sentinel, or go there without ssh</source>
        <translation>ssh mène à un seul serveur&#xa0;: donnez une seule adresse et pas de sentinelle, ou connectez-vous sans ssh</translation>
    </message>
    <message>
        <source>the name of the robot&apos;s server among its sentinels is too long, or has control characters</source>
        <translation>le nom du serveur du robot auprès de ses sentinelles est trop long, ou contient des caractères de contrôle</translation>
    </message>
    <message>
        <source>replicas are those of a cluster, and sentinels lead to a server without one: choose one of them</source>
        <translation>les répliques sont celles d&apos;une grappe, et les sentinelles mènent à un serveur sans grappe&#xa0;: choisissez l&apos;un des deux</translation>
    </message>
    <message>
        <source>a replica of %1</source>
        <translation>une réplique de %1</translation>
    </message>
</context>
<context>
    <name>ConnectionStore</name>
    <message>
        <source>the robot&apos;s addresses are too long a text</source>
        <translation>les adresses du robot forment un texte trop long</translation>
    </message>
</context>
<context>
    <name>ConnectionText</name>
    <message>
        <source>Connected since %1</source>
        <translation>Connecté depuis %1</translation>
    </message>
    <message>
        <source>Refused, lost since %1</source>
        <translation>Refusé, perdu depuis %1</translation>
    </message>
    <message>
        <source>Disconnected since %1</source>
        <translation>Déconnecté depuis %1</translation>
    </message>
    <message>
        <source>Connection lost since %1</source>
        <translation>Connexion perdue depuis %1</translation>
    </message>
    <message>
        <source>Interrupted since %1</source>
        <translation>Interrompu depuis %1</translation>
    </message>
    <message>
        <source>The connection is not tried again: that would not help, and might lock the account. &quot;Connect again&quot; asks for what was refused.</source>
        <translation>La connexion n&apos;est pas retentée&#xa0;: cela n&apos;aiderait pas et pourrait verrouiller le compte. «&#xa0;Se connecter à nouveau&#xa0;» demande ce qui a été refusé.</translation>
    </message>
    <message>
        <source>The connection was closed on request. &quot;Reconnect&quot; opens it again.</source>
        <translation>La connexion a été fermée sur demande. «&#xa0;Reconnecter&#xa0;» la rouvre.</translation>
    </message>
    <message>
        <source>The connection is tried again and again, until it works.</source>
        <translation>La connexion est retentée jusqu&apos;à ce qu&apos;elle aboutisse.</translation>
    </message>
    <message>
        <source>Panels have stopped fetching: once connected, start it again in each, where it says how it fetches.</source>
        <translation>Les panneaux ne lisent plus de valeurs&#xa0;: une fois la connexion établie, relancez la lecture dans chacun, là où il indique comment il lit.</translation>
    </message>
    <message>
        <source>Panels then go on by themselves.</source>
        <translation>Les panneaux continuent alors d&apos;eux-mêmes.</translation>
    </message>
    <message>
        <source>Not trying again: %1</source>
        <translation>Pas de nouvelle tentative&#xa0;: %1</translation>
    </message>
    <message>
        <source>Trying again: %1</source>
        <translation>Nouvelle tentative&#xa0;: %1</translation>
    </message>
    <message>
        <source>Refused: </source>
        <translation>Refusé&#xa0;: </translation>
    </message>
    <message>
        <source>Disconnected: </source>
        <translation>Déconnecté&#xa0;: </translation>
    </message>
    <message>
        <source>Lost: </source>
        <translation>Perdu&#xa0;: </translation>
    </message>
    <message>
        <source>Interrupted: </source>
        <translation>Interrompu&#xa0;: </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Nothing new comes in: values are the last ones that came, and curves drawn since then are no new data.</source>
        <translation>Rien de nouveau n&apos;arrive&#xa0;: les valeurs sont les dernières reçues, et les courbes tracées depuis ne sont pas de nouvelles données.</translation>
    </message>
    <message>
        <source>Panels that were open when the connection was lost have stopped fetching, and show what came before. Start it again in each, where it says how it fetches.</source>
        <translation>Les panneaux qui étaient ouverts lors de la perte de la connexion ne lisent plus de valeurs et montrent celles d&apos;avant. Relancez la lecture dans chacun, là où il indique comment il lit.</translation>
    </message>
    <message numerus="yes">
        <source>Concerns %1 of %n panels; the others go on.</source>
        <translation>
            <numerusform>Concerne %1 panneau sur %n&#xa0;; les autres continuent.</numerusform>
            <numerusform>Panneaux concernés&#xa0;: %1 sur %n&#xa0;; les autres continuent.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>No panel opens %1.

Give a configuration that a panel has saved, or a workspace (*.tarvek).</source>
        <translation>Aucun panneau n&apos;ouvre %1.

Indiquez une configuration enregistrée par un panneau, ou un espace de travail (*.tarvek).</translation>
    </message>
    <message>
        <source>There is no panel &quot;%1&quot;. Found: %2</source>
        <translation>Il n&apos;y a pas de panneau «&#xa0;%1&#xa0;». Trouvés&#xa0;: %2</translation>
    </message>
    <message>
        <source>none</source>
        <translation>aucun</translation>
    </message>
    <message numerus="yes">
        <source>

%n plug-in(s) could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</source>
        <translation>
            <numerusform>

%n module n&apos;a pas pu être chargé&#xa0;: «&#xa0;Aide&#xa0;», «&#xa0;Modules en échec...&#xa0;» en donne la raison.</numerusform>
            <numerusform>

%n modules n&apos;ont pas pu être chargés&#xa0;: «&#xa0;Aide&#xa0;», «&#xa0;Modules en échec...&#xa0;» en donne la raison.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) are running. Quitting ends them; their files are kept.</source>
        <translation>
            <numerusform>%n enregistrement est en cours. Quitter y met fin&#xa0;; son fichier est conservé.</numerusform>
            <numerusform>%n enregistrements sont en cours. Quitter y met fin&#xa0;; leurs fichiers sont conservés.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and quit</source>
        <translation>&amp;Terminer les enregistrements et quitter</translation>
    </message>
</context>
<context>
    <name>DockTitle</name>
    <message>
        <source>Detach or attach the panel</source>
        <translation>Détacher ou rattacher le panneau</translation>
    </message>
    <message>
        <source>Close the panel</source>
        <translation>Fermer le panneau</translation>
    </message>
    <message>
        <source>Title of the panel</source>
        <translation>Titre du panneau</translation>
    </message>
    <message>
        <source>Drag to move the panel, double-click to rename it</source>
        <translation>Glisser pour déplacer le panneau, double-cliquer pour le renommer</translation>
    </message>
</context>
<context>
    <name>EndingQuestion</name>
    <message>
        <source>Recordings are running</source>
        <translation>Des enregistrements sont en cours</translation>
    </message>
</context>
<context>
    <name>ErrorReporter</name>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n autre dans les détails.</numerusform>
            <numerusform>%n autres dans les détails.</numerusform>
        </translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>FileField</name>
    <message>
        <source>PEM files (*.pem *.crt *.key)</source>
        <translation>Fichiers PEM (*.pem *.crt *.key)</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Parcourir...</translation>
    </message>
</context>
<context>
    <name>FileMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;New connection...</source>
        <translation>&amp;Nouvelle connexion...</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>R&amp;ecord...</source>
        <translation>Enregistrer des &amp;valeurs...</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Déconnecter</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Reconnecter</translation>
    </message>
    <message>
        <source>Wa&amp;it for the robot...</source>
        <translation>Attente d&amp;u robot...</translation>
    </message>
    <message>
        <source>&amp;Close panel</source>
        <translation>Fermer le &amp;panneau</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>Close &amp;window</source>
        <translation>Fer&amp;mer la fenêtre</translation>
    </message>
    <message>
        <source>Ctrl+Shift+W</source>
        <translation>Ctrl+Shift+W</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
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
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Find in the table</source>
        <translation>Rechercher dans le tableau</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Résultat précédent</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Résultat suivant</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>Il n&apos;y a pas de tableau dans ce panneau.</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Introuvable</translation>
    </message>
    <message numerus="yes">
        <source>%n match(es), %1 % searched</source>
        <translation>
            <numerusform>%n résultat, %1&#xa0;% parcourus</numerusform>
            <numerusform>%n résultats, %1&#xa0;% parcourus</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n match(es)</source>
        <translation>
            <numerusform>%n résultat</numerusform>
            <numerusform>%n résultats</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Guide</name>
    <message>
        <source>The guide is not there: %1 is missing or cannot be read. Install the program&apos;s documents, too.</source>
        <translation>Le guide est absent&#xa0;: %1 manque ou ne peut pas être lu. Installez aussi les documents du programme.</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>Guide</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aide</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Guide</translation>
    </message>
    <message>
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message>
        <source>&amp;Shortcuts...</source>
        <translation>&amp;Raccourcis clavier...</translation>
    </message>
    <message>
        <source>&amp;Plug-ins that failed (%1)...</source>
        <translation>&amp;Modules en échec (%1)...</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostics</source>
        <translation>&amp;Copier le diagnostic</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>À &amp;propos</translation>
    </message>
    <message>
        <source>Copied: paste it into your report</source>
        <translation>Copié&#xa0;: collez-le dans votre rapport</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>%1 %2

Shows tool panels for robots on the network.</source>
        <translation>%1 %2

Affiche des panneaux d&apos;outils pour les robots du réseau.</translation>
    </message>
</context>
<context>
    <name>KeptPasswords</name>
    <message>
        <source>The password is not kept: %1</source>
        <translation>Le mot de passe n&apos;est pas conservé&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>LossLimitDialog</name>
    <message>
        <source>Wait for the robot</source>
        <translation>Attente du robot</translation>
    </message>
    <message>
        <source>Minutes that panels wait for a robot that is away before they give up (0: none):</source>
        <translation>Minutes pendant lesquelles les panneaux attendent un robot absent avant d&apos;abandonner (0&#xa0;: aucune)&#xa0;:</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Édition</translation>
    </message>
    <message numerus="yes">
        <source>%1 (%n panel(s)). %2</source>
        <translation>
            <numerusform>%1 (%n panneau). %2</numerusform>
            <numerusform>%1 (%n panneaux). %2</numerusform>
        </translation>
    </message>
    <message>
        <source>The start-up dialog of another panel is still open.</source>
        <translation>Le dialogue de démarrage d&apos;un autre panneau est encore ouvert.</translation>
    </message>
    <message>
        <source>The error does not describe itself.</source>
        <translation>L&apos;erreur n&apos;a pas de description.</translation>
    </message>
    <message>
        <source>The panel &quot;%1&quot; cannot be opened.

%2</source>
        <translation>Le panneau «&#xa0;%1&#xa0;» ne peut pas être ouvert.

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
        <translation>le serveur ou la grappe du robot</translation>
    </message>
    <message>
        <source>a replica in its cluster</source>
        <translation>une réplique dans sa grappe</translation>
    </message>
    <message>
        <source>sentinels of</source>
        <translation>les sentinelles de</translation>
    </message>
    <message>
        <source>What the address leads to</source>
        <translation>Ce à quoi mène l&apos;adresse</translation>
    </message>
    <message>
        <source>A replica takes work off the node that is written to; its values may be late. Sentinels know which of several servers is the robot&apos;s.</source>
        <translation>Une réplique décharge le nœud où l&apos;on écrit&#xa0;; ses valeurs peuvent avoir du retard. Les sentinelles savent lequel de plusieurs serveurs est celui du robot.</translation>
    </message>
    <message>
        <source>Name of the server</source>
        <translation>Nom du serveur</translation>
    </message>
    <message>
        <source>the server&apos;s name</source>
        <translation>le nom du serveur</translation>
    </message>
    <message>
        <source>Sentinels watch several servers: say what they call the robot&apos;s, or choose what else the address leads to.</source>
        <translation>Les sentinelles surveillent plusieurs serveurs&#xa0;: indiquez le nom qu&apos;elles donnent à celui du robot, ou choisissez à quoi d&apos;autre mène l&apos;adresse.</translation>
    </message>
</context>
<context>
    <name>OutageBar</name>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Déconnecter</translation>
    </message>
    <message>
        <source>Do not wait for the robot any longer</source>
        <translation>Ne plus attendre le robot</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Reconnecter</translation>
    </message>
    <message>
        <source>Open the connection again, at once</source>
        <translation>Rouvrir la connexion immédiatement</translation>
    </message>
    <message>
        <source>Connect &amp;again...</source>
        <translation>&amp;Se connecter à nouveau...</translation>
    </message>
    <message>
        <source>Give the user, password or certificates that the robot wants</source>
        <translation>Indiquer l&apos;utilisateur, le mot de passe ou les certificats que le robot demande</translation>
    </message>
    <message>
        <source>&amp;Understood</source>
        <translation>&amp;Compris</translation>
    </message>
    <message>
        <source>Hide this</source>
        <translation>Masquer ceci</translation>
    </message>
</context>
<context>
    <name>PanelCommands</name>
    <message>
        <source>&amp;Save picture...</source>
        <translation>Enregistrer l&apos;&amp;image...</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Save &amp;table as CSV...</source>
        <translation>Enregistrer le &amp;tableau en CSV...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>&amp;Copy cell</source>
        <translation>&amp;Copier la cellule</translation>
    </message>
    <message>
        <source>Copy &amp;row</source>
        <translation>Copier la &amp;ligne</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Copy &amp;all</source>
        <translation>Copier &amp;tout</translation>
    </message>
    <message>
        <source>Copy &amp;picture</source>
        <translation>Copier l&apos;&amp;image</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Rechercher...</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>Rechercher le &amp;suivant</translation>
    </message>
    <message>
        <source>F3</source>
        <translation>F3</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>Rechercher le &amp;précédent</translation>
    </message>
    <message>
        <source>Shift+F3</source>
        <translation>Shift+F3</translation>
    </message>
    <message>
        <source>&amp;Next panel</source>
        <translation>Panneau &amp;suivant</translation>
    </message>
    <message>
        <source>Ctrl+Tab</source>
        <translation>Ctrl+Tab</translation>
    </message>
    <message>
        <source>&amp;Previous panel</source>
        <translation>Panneau &amp;précédent</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Tab</source>
        <translation>Ctrl+Shift+Tab</translation>
    </message>
    <message>
        <source>&amp;Detach or attach</source>
        <translation>&amp;Détacher ou rattacher</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Renommer...</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>Il n&apos;y a pas de tableau dans ce panneau.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 a été enregistré</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Enregistrer l&apos;image</translation>
    </message>
    <message>
        <source>Picture (*.png)</source>
        <translation>Image (*.png)</translation>
    </message>
    <message>
        <source>Document, sharp at any size (*.pdf)</source>
        <translation>Document, net à toute taille (*.pdf)</translation>
    </message>
    <message>
        <source>Save table</source>
        <translation>Enregistrer le tableau</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>Valeurs séparées par des virgules (*.csv)</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copié</translation>
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
        <translation>Son dialogue de démarrage est encore ouvert.</translation>
    </message>
    <message>
        <source>Open the panel again when the robot is connected.</source>
        <translation>Ouvrez à nouveau le panneau quand le robot sera connecté.</translation>
    </message>
    <message>
        <source>The robot is not connected yet.</source>
        <translation>Le robot n&apos;est pas encore connecté.</translation>
    </message>
</context>
<context>
    <name>PanelMenu</name>
    <message>
        <source>&amp;Panels</source>
        <translation>&amp;Panneaux</translation>
    </message>
    <message>
        <source>(none found)</source>
        <translation>(aucun trouvé)</translation>
    </message>
</context>
<context>
    <name>Picture</name>
    <message>
        <source>The picture cannot be saved as %1: let the name end in .png or .pdf.</source>
        <translation>L&apos;image ne peut pas être enregistrée sous %1&#xa0;: le nom doit se terminer par .png ou .pdf.</translation>
    </message>
    <message>
        <source>There is nothing in the picture to save.</source>
        <translation>L&apos;image est vide, il n&apos;y a rien à enregistrer.</translation>
    </message>
</context>
<context>
    <name>PluginFailuresDialog</name>
    <message>
        <source>Plug-ins that failed</source>
        <translation>Modules en échec</translation>
    </message>
    <message>
        <source>Looked in: %1</source>
        <translation>Cherchés dans&#xa0;: %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>Every plug-in was loaded.</source>
        <translation>Tous les modules ont été chargés.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Raison</translation>
    </message>
</context>
<context>
    <name>PluginLoader</name>
    <message>
        <source>It is no plug-in: %1</source>
        <translation>Ce n&apos;est pas un module&#xa0;: %1</translation>
    </message>
    <message>
        <source>It offers the interface &quot;%1&quot;, but panels have &quot;%2&quot;. Get a version made for this program.</source>
        <translation>Il offre l&apos;interface «&#xa0;%1&#xa0;», mais les panneaux ont «&#xa0;%2&#xa0;». Procurez-vous une version faite pour ce programme.</translation>
    </message>
    <message>
        <source>It is loaded, but makes no plug-in object.</source>
        <translation>Il est chargé, mais ne crée pas d&apos;objet de module.</translation>
    </message>
    <message>
        <source>Its plug-in object (%1) has no panel interface.</source>
        <translation>Son objet de module (%1) n&apos;a pas l&apos;interface d&apos;un panneau.</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>Ce dossier n&apos;existe pas.</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>Ce fichier n&apos;existe pas.</translation>
    </message>
    <message>
        <source>It failed in a way it does not describe.</source>
        <translation>Il a échoué d&apos;une façon qu&apos;il ne décrit pas.</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>It is no plug-in: the file is empty.</source>
        <translation>Ce n&apos;est pas un module&#xa0;: le fichier est vide.</translation>
    </message>
    <message>
        <source>It was built with Qt %1, and this program with Qt %2. Get a version made for this program.</source>
        <translation>Il a été compilé avec Qt %1, et ce programme avec Qt %2. Procurez-vous une version faite pour ce programme.</translation>
    </message>
</context>
<context>
    <name>Recording</name>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>%1 ne peut pas être lancé&#xa0;: %2</translation>
    </message>
    <message>
        <source>The recording of %1 has ended, with warnings.</source>
        <translation>L&apos;enregistrement de %1 s&apos;est terminé, avec des avertissements.</translation>
    </message>
    <message>
        <source>The recording of %1 has ended with an error (exit status %2).</source>
        <translation>L&apos;enregistrement de %1 s&apos;est terminé avec une erreur (code de sortie %2).</translation>
    </message>
    <message>
        <source>The recording of %1 did not end within %2 s, and was killed.</source>
        <translation>L&apos;enregistrement de %1 ne s&apos;est pas terminé en %2 s et a été tué.</translation>
    </message>
    <message>
        <source>The recording of %1 was killed, or crashed.</source>
        <translation>L&apos;enregistrement de %1 a été tué, ou a planté.</translation>
    </message>
    <message>
        <source>File: %1</source>
        <translation>Fichier&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>RecordingBar</name>
    <message>
        <source>Recordings</source>
        <translation>Enregistrements</translation>
    </message>
</context>
<context>
    <name>RecordingDialog</name>
    <message>
        <source>Configuration files (*.xml);;All files (*)</source>
        <translation>Fichiers de configuration (*.xml);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv);;All files (*)</source>
        <translation>Valeurs séparées par des virgules (*.csv);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Record %1</source>
        <translation>Enregistrement de %1</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Démarrer</translation>
    </message>
    <message>
        <source>What a &amp;configuration file watches:</source>
        <translation>Ce qu&apos;un fichier de &amp;configuration observe&#xa0;:</translation>
    </message>
    <message>
        <source>Configuration file</source>
        <translation>Fichier de configuration</translation>
    </message>
    <message>
        <source>a file that a panel has saved</source>
        <translation>un fichier enregistré par un panneau</translation>
    </message>
    <message>
        <source>These &amp;keys, one a line:</source>
        <translation>Ces c&amp;lés, une par ligne&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;All keys that the robot has at the start</source>
        <translation>&amp;Toutes les clés que le robot a au départ</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>Only what c&amp;hanged: a row for each value</source>
        <translation>Seulement les c&amp;hangements&#xa0;: une ligne par valeur</translation>
    </message>
    <message>
        <source>Call col&amp;umns by keys, not by aliases</source>
        <translation>&amp;Nommer les colonnes par clés, non par alias</translation>
    </message>
    <message>
        <source>So that a robot that plays the recording has these keys</source>
        <translation>Afin qu&apos;un robot qui rejoue l&apos;enregistrement ait ces clés</translation>
    </message>
    <message>
        <source>An empty row where the robot was &amp;lost</source>
        <translation>&amp;Une ligne vide là où le robot était perdu</translation>
    </message>
    <message>
        <source>A row e&amp;very:</source>
        <translation>Une ligne t&amp;outes les&#xa0;:</translation>
    </message>
    <message>
        <source>File to record into</source>
        <translation>Fichier de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Another &amp;file every</source>
        <translation>Un autre &amp;fichier tous les</translation>
    </message>
    <message>
        <source>MB</source>
        <translation>Mo</translation>
    </message>
    <message>
        <source>GB</source>
        <translation>Go</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>minutes</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>heures</translation>
    </message>
    <message>
        <source>days</source>
        <translation>jours</translation>
    </message>
    <message>
        <source>&amp;Into:</source>
        <translation>D&amp;ans&#xa0;:</translation>
    </message>
    <message>
        <source>Choose a configuration file, or say otherwise what to record.</source>
        <translation>Choisissez un fichier de configuration, ou indiquez autrement quoi enregistrer.</translation>
    </message>
    <message>
        <source>There is no file %1. Choose one that a panel has saved.</source>
        <translation>Il n&apos;y a pas de fichier %1. Choisissez-en un enregistré par un panneau.</translation>
    </message>
    <message>
        <source>Enter the keys to record, one a line.</source>
        <translation>Saisissez les clés à enregistrer, une par ligne.</translation>
    </message>
    <message>
        <source>Choose the file to record into.</source>
        <translation>Choisissez le fichier de l&apos;enregistrement.</translation>
    </message>
    <message>
        <source>%1 is a folder. Add the name of the file to record into.</source>
        <translation>%1 est un dossier. Ajoutez le nom du fichier de l&apos;enregistrement.</translation>
    </message>
    <message>
        <source>The file is there already</source>
        <translation>Le fichier existe déjà</translation>
    </message>
    <message>
        <source>%1 is there already. Go on behind its last row? It is never replaced; if it is no recording of the same columns, it is left as it is, and nothing is recorded.</source>
        <translation>%1 existe déjà. Continuer après sa dernière ligne&#xa0;? Il n&apos;est jamais remplacé&#xa0;; si ce n&apos;est pas un enregistrement avec les mêmes colonnes, il reste tel quel et rien n&apos;est enregistré.</translation>
    </message>
    <message>
        <source>&amp;Go on behind it</source>
        <translation>Continuer à la &amp;suite</translation>
    </message>
</context>
<context>
    <name>RecordingPlan</name>
    <message>
        <source>The program zo-record, which records, is missing. Install the package zo-record, or put the program beside tarvek-desktop, or into a folder of PATH.</source>
        <translation>Le programme zo-record, qui enregistre, manque. Installez le paquet zo-record, ou placez le programme à côté de tarvek-desktop ou dans un dossier de PATH.</translation>
    </message>
</context>
<context>
    <name>RecordingRow</name>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>End this recording; its file is kept</source>
        <translation>Terminer cet enregistrement&#xa0;; son fichier est conservé</translation>
    </message>
    <message>
        <source>is being ended</source>
        <translation>arrêt en cours</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>%1, from %2</source>
        <translation>%1, depuis %2</translation>
    </message>
    <message>
        <source>Stop recording %1</source>
        <translation>Arrêter l&apos;enregistrement %1</translation>
    </message>
</context>
<context>
    <name>RecordingState</name>
    <message>
        <source>starting</source>
        <translation>démarrage</translation>
    </message>
    <message>
        <source>waits for the robot</source>
        <translation>attend le robot</translation>
    </message>
    <message numerus="yes">
        <source>%1 rows</source>
        <translation>
            <numerusform>%1 ligne</numerusform>
            <numerusform>%1 lignes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 polls missed</source>
        <translation>
            <numerusform>%1 lecture manquée</numerusform>
            <numerusform>%1 lectures manquées</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 values too large</source>
        <translation>
            <numerusform>%1 valeur trop grande</numerusform>
            <numerusform>%1 valeurs trop grandes</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>%1 libres</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>keys without a value: %1</source>
        <translation>clés sans valeur&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>Recordings</name>
    <message>
        <source>The password of this robot has a line break, which the recorder cannot be given. Give the robot&apos;s user another password, or connect as another user.</source>
        <translation>Le mot de passe de ce robot contient un saut de ligne, qui ne peut pas être transmis à l&apos;enregistreur. Donnez un autre mot de passe à l&apos;utilisateur du robot, ou connectez-vous en tant qu&apos;un autre utilisateur.</translation>
    </message>
    <message numerus="yes">
        <source>%n recordings are running in this window: end one of them first.</source>
        <translation>
            <numerusform>%n enregistrement est en cours dans cette fenêtre&#xa0;: terminez-le d&apos;abord.</numerusform>
            <numerusform>%n enregistrements sont en cours dans cette fenêtre&#xa0;: terminez-en un d&apos;abord.</numerusform>
        </translation>
    </message>
    <message>
        <source>Recorded %1: %2</source>
        <translation>%1 enregistré&#xa0;: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) of this window are running. Closing it ends them; their files are kept.</source>
        <translation>
            <numerusform>%n enregistrement de cette fenêtre est en cours. La fermer y met fin&#xa0;; son fichier est conservé.</numerusform>
            <numerusform>%n enregistrements de cette fenêtre sont en cours. La fermer y met fin&#xa0;; leurs fichiers sont conservés.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and close</source>
        <translation>&amp;Terminer les enregistrements et fermer</translation>
    </message>
</context>
<context>
    <name>RobotList</name>
    <message>
        <source>Robots that you have saved. A double click renames one.</source>
        <translation>Robots que vous avez enregistrés. Un double clic permet d&apos;en renommer un.</translation>
    </message>
    <message>
        <source>Sa&amp;ved robots:</source>
        <translation>Ro&amp;bots enregistrés&#xa0;:</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Descendre</translation>
    </message>
    <message>
        <source>Delete...</source>
        <translation>Supprimer...</translation>
    </message>
    <message>
        <source>Delete a robot</source>
        <translation>Supprimer un robot</translation>
    </message>
    <message>
        <source>Delete the saved robot &quot;%1&quot;?</source>
        <translation>Supprimer le robot enregistré «&#xa0;%1&#xa0;»&#xa0;?</translation>
    </message>
</context>
<context>
    <name>RobotOpening</name>
    <message>
        <source>The way there is not encrypted: whoever listens on it can read the password.</source>
        <translation>Le chemin n&apos;est pas chiffré&#xa0;: quiconque l&apos;écoute peut lire le mot de passe.</translation>
    </message>
    <message>
        <source>The way from %1 on is not encrypted: whoever listens on it can read the password.</source>
        <translation>Le chemin à partir de %1 n&apos;est pas chiffré&#xa0;: quiconque l&apos;écoute peut lire le mot de passe.</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>Password for the robot %1:</source>
        <translation>Mot de passe pour le robot %1&#xa0;:</translation>
    </message>
    <message>
        <source>Password of &quot;%1&quot; for the robot %2:</source>
        <translation>Mot de passe de «&#xa0;%1&#xa0;» pour le robot %2&#xa0;:</translation>
    </message>
</context>
<context>
    <name>SavedFile</name>
    <message>
        <source>%1 cannot be saved: %2</source>
        <translation>%1 ne peut pas être enregistré&#xa0;: %2</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Shortcuts</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Touches</translation>
    </message>
    <message>
        <source>What they do</source>
        <translation>Action</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Entrée</translation>
    </message>
    <message>
        <source>Next match, in the bar to find with</source>
        <translation>Résultat suivant, dans la barre de recherche</translation>
    </message>
    <message>
        <source>Shift+Return</source>
        <translation>Maj+Entrée</translation>
    </message>
    <message>
        <source>Previous match, there</source>
        <translation>Résultat précédent, au même endroit</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Échap</translation>
    </message>
    <message>
        <source>Close the bar, or give a title its old text</source>
        <translation>Fermer la barre, ou rendre à un titre son ancien texte</translation>
    </message>
</context>
<context>
    <name>SshQuestion</name>
    <message>
        <source>ssh asks</source>
        <translation>Question de ssh</translation>
    </message>
</context>
<context>
    <name>SshRelay</name>
    <message>
        <source>&apos;%1&apos; is no host for ssh: write USER@HOST, as in pilot@gate-3, or a name that ssh&apos;s configuration knows</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas une machine pour ssh&#xa0;: écrivez USER@HOST, comme pilot@gate-3, ou un nom connu de la configuration de ssh</translation>
    </message>
    <message>
        <source>the folder for temporary files has too long a name: %1</source>
        <translation>le dossier des fichiers temporaires a un nom trop long&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>StartPage</name>
    <message>
        <source>Choose a panel:</source>
        <translation>Choisissez un panneau&#xa0;:</translation>
    </message>
    <message>
        <source>

Some files could not be used: see &quot;Help&quot;, &quot;Plug-ins that failed&quot;.</source>
        <translation>

Certains fichiers n&apos;ont pas pu être utilisés&#xa0;: voir «&#xa0;Aide&#xa0;», «&#xa0;Modules en échec&#xa0;».</translation>
    </message>
    <message>
        <source>No panel was found. Panels were looked for in:
%1

Start the program with --plugin-dir DIR or --plugin FILE to say where they are.</source>
        <translation>Aucun panneau n&apos;a été trouvé. Ils ont été cherchés dans&#xa0;:
%1

Lancez le programme avec --plugin-dir DIR ou --plugin FILE pour indiquer où ils sont.</translation>
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
        <translation>il y a %1 ms</translation>
    </message>
    <message>
        <source>%1 s ago</source>
        <translation>il y a %1 s</translation>
    </message>
    <message>
        <source>%1 min ago</source>
        <translation>il y a %1 min</translation>
    </message>
    <message>
        <source>%1 h ago</source>
        <translation>il y a %1 h</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>changes only</source>
        <translation>changements seulement</translation>
    </message>
    <message>
        <source>everything</source>
        <translation>tout</translation>
    </message>
    <message>
        <source>the robot tells what was written, and only that is read</source>
        <translation>le robot indique ce qui a été écrit, et seul cela est lu</translation>
    </message>
    <message>
        <source>every value is read each time</source>
        <translation>chaque valeur est lue à chaque fois</translation>
    </message>
    <message>
        <source>no values are followed</source>
        <translation>aucune valeur n&apos;est suivie</translation>
    </message>
    <message>
        <source>%1 answers/s</source>
        <translation>%1 réponses/s</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>pas encore</translation>
    </message>
    <message>
        <source>Round trip: %1</source>
        <translation>Aller-retour&#xa0;: %1</translation>
    </message>
    <message>
        <source>Newest answer: %1</source>
        <translation>Dernière réponse&#xa0;: %1</translation>
    </message>
    <message>
        <source>Answers: %1/s</source>
        <translation>Réponses&#xa0;: %1/s</translation>
    </message>
    <message>
        <source>Received: %1</source>
        <translation>Reçu&#xa0;: %1</translation>
    </message>
    <message>
        <source>Sent: %1</source>
        <translation>Envoyé&#xa0;: %1</translation>
    </message>
    <message>
        <source>Following: %1</source>
        <translation>Suivi&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>WorkspaceFile</name>
    <message>
        <source>it is no file</source>
        <translation>ce n&apos;est pas un fichier</translation>
    </message>
    <message>
        <source>it is larger than %1 MiB</source>
        <translation>il dépasse %1 Mio</translation>
    </message>
    <message>
        <source>The workspace %1 cannot be opened: %2.

Choose a file that &quot;Save workspace&quot; wrote.</source>
        <translation>L&apos;espace de travail %1 ne peut pas être ouvert&#xa0;: %2.

Choisissez un fichier écrit par «&#xa0;Enregistrer l&apos;espace de travail&#xa0;».</translation>
    </message>
    <message>
        <source>it would be larger than %1 MiB</source>
        <translation>il dépasserait %1 Mio</translation>
    </message>
    <message>
        <source>%1 cannot be saved: %2.</source>
        <translation>%1 ne peut pas être enregistré&#xa0;: %2.</translation>
    </message>
</context>
<context>
    <name>WorkspaceMenu</name>
    <message>
        <source>&amp;Open workspace...</source>
        <translation>&amp;Ouvrir un espace de travail...</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Recent wor&amp;kspaces</source>
        <translation>Espaces de travail ré&amp;cents</translation>
    </message>
    <message>
        <source>Sa&amp;ve workspace...</source>
        <translation>Enre&amp;gistrer l&apos;espace de travail...</translation>
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
        <translation>Robot %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Not all of the workspace could be opened:

%1</source>
        <translation>L&apos;espace de travail n&apos;a pas pu être ouvert en entier&#xa0;:

%1</translation>
    </message>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n autre dans les détails.</numerusform>
            <numerusform>%n autres dans les détails.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Connecting to
%1</source>
        <translation>Connexion à
%1</translation>
    </message>
    <message>
        <source>%1: not tried to the end</source>
        <translation>%1&#xa0;: tentative interrompue</translation>
    </message>
    <message>
        <source>Panel &quot;%1&quot; of %2: there is no such plug-in here. &quot;Help&quot;, &quot;Plug-ins that failed...&quot; may say why.</source>
        <translation>Panneau «&#xa0;%1&#xa0;» de %2&#xa0;: ce module n&apos;existe pas ici. «&#xa0;Aide&#xa0;», «&#xa0;Modules en échec...&#xa0;» en donne peut-être la raison.</translation>
    </message>
    <message>
        <source>Try &amp;again</source>
        <translation>&amp;Réessayer</translation>
    </message>
    <message>
        <source>&amp;Leave out panels without a plug-in when the workspace is saved again</source>
        <translation>&amp;Omettre les panneaux sans module au prochain enregistrement de l&apos;espace de travail</translation>
    </message>
</context>
<context>
    <name>WorkspaceText</name>
    <message>
        <source>&quot;%1&quot; is no text, or too long</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas un texte, ou est trop long</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has characters that no text of one line has</source>
        <translation>«&#xa0;%1&#xa0;» contient des caractères qu&apos;un texte d&apos;une ligne n&apos;a pas</translation>
    </message>
    <message>
        <source>no plug-in is named</source>
        <translation>aucun module n&apos;est nommé</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>more than %1 panels</source>
        <translation>plus de %1 panneaux</translation>
    </message>
    <message>
        <source>%1, panel %2</source>
        <translation>%1, panneau %2</translation>
    </message>
    <message>
        <source>the window of %1</source>
        <translation>la fenêtre de %1</translation>
    </message>
    <message>
        <source>it has more than %1 windows</source>
        <translation>il a plus de %1 fenêtres</translation>
    </message>
    <message>
        <source>it is no JSON: %1, at byte %2</source>
        <translation>ce n&apos;est pas du JSON&#xa0;: %1, à l&apos;octet %2</translation>
    </message>
    <message>
        <source>it is no workspace of this program</source>
        <translation>ce n&apos;est pas un espace de travail de ce programme</translation>
    </message>
    <message>
        <source>Window %1</source>
        <translation>Fenêtre %1</translation>
    </message>
    <message>
        <source>a newer version wrote it, and this one does not understand it: choose another file</source>
        <translation>une version plus récente l&apos;a écrit, et celle-ci ne le comprend pas&#xa0;: choisissez un autre fichier</translation>
    </message>
</context>
<context>
    <name>Workspaces</name>
    <message>
        <source>Workspaces (*.tarvek)</source>
        <translation>Espaces de travail (*.tarvek)</translation>
    </message>
    <message>
        <source>Open workspace</source>
        <translation>Ouvrir un espace de travail</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Save workspace</source>
        <translation>Enregistrer l&apos;espace de travail</translation>
    </message>
    <message>
        <source>The workspace is saved in %1</source>
        <translation>L&apos;espace de travail est enregistré dans %1</translation>
    </message>
    <message>
        <source>A workspace is being opened already</source>
        <translation>Un espace de travail est déjà en cours d&apos;ouverture</translation>
    </message>
</context>
</TS>
