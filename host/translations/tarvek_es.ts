<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>Application</name>
    <message>
        <source>An error that does not describe itself.</source>
        <translation>Un error que no se describe.</translation>
    </message>
</context>
<context>
    <name>CheckDialog</name>
    <message>
        <source>ok</source>
        <translation>correcto</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fallido</translation>
    </message>
    <message>
        <source>skipped</source>
        <translation>omitido</translation>
    </message>
    <message>
        <source>look-up</source>
        <translation>búsqueda de la dirección</translation>
    </message>
    <message>
        <source>connection</source>
        <translation>conexión</translation>
    </message>
    <message>
        <source>encryption</source>
        <translation>cifrado</translation>
    </message>
    <message>
        <source>answer</source>
        <translation>respuesta</translation>
    </message>
    <message>
        <source>readiness</source>
        <translation>disponibilidad</translation>
    </message>
    <message>
        <source>login</source>
        <translation>inicio de sesión</translation>
    </message>
    <message>
        <source>node</source>
        <translation>nodo</translation>
    </message>
    <message>
        <source>rights</source>
        <translation>permisos</translation>
    </message>
    <message>
        <source>server</source>
        <translation>servidor</translation>
    </message>
    <message>
        <source>keys</source>
        <translation>claves</translation>
    </message>
    <message>
        <source>round trip</source>
        <translation>ida y vuelta</translation>
    </message>
    <message>
        <source>notices</source>
        <translation>avisos</translation>
    </message>
    <message>
        <source>Check the name, or enter the address itself.</source>
        <translation>Compruebe el nombre o introduzca la dirección misma.</translation>
    </message>
    <message>
        <source>Is the robot on, does its memory listen to this network at this port, and does no firewall stand between?</source>
        <translation>¿Está encendido el robot, escucha su memoria en esta red y en este puerto, y no hay ningún cortafuegos de por medio?</translation>
    </message>
    <message>
        <source>Does the robot speak TLS at this port? Is the file of authorities that of the one who signed its certificate?</source>
        <translation>¿Usa el robot TLS en este puerto? ¿Es el archivo de autoridades el de quien firmó su certificado?</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, and does it want to see a certificate?</source>
        <translation>¿Es la memoria de un robot, y pide un certificado?</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, does it hang, or does it want encryption?</source>
        <translation>¿Es la memoria de un robot, está bloqueada o exige cifrado?</translation>
    </message>
    <message>
        <source>Try again in a while.</source>
        <translation>Vuelva a intentarlo dentro de un rato.</translation>
    </message>
    <message>
        <source>Check user and password.</source>
        <translation>Compruebe el usuario y la contraseña.</translation>
    </message>
    <message>
        <source>The robot&apos;s access list must allow this user SCAN, MGET, and to read the keys.</source>
        <translation>La lista de acceso del robot debe permitir a este usuario SCAN, MGET y leer las claves.</translation>
    </message>
    <message>
        <source>Test of %1</source>
        <translation>Prueba de %1</translation>
    </message>
    <message>
        <source>Looking up the address...</source>
        <translation>Buscando la dirección...</translation>
    </message>
    <message>
        <source>%1 - %2: %3</source>
        <translation>%1 - %2: %3</translation>
    </message>
    <message>
        <source>
All that a panel needs works.</source>
        <translation>
Todo lo que necesita un panel funciona.</translation>
    </message>
    <message>
        <source>
A panel would not work with this robot.</source>
        <translation>
Un panel no funcionaría con este robot.</translation>
    </message>
</context>
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Connect to a robot</source>
        <translation>Conectar con un robot</translation>
    </message>
    <message>
        <source>&amp;Test...</source>
        <translation>Pro&amp;bar...</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Guardar...</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Conectar</translation>
    </message>
    <message>
        <source>Save the robot</source>
        <translation>Guardar el robot</translation>
    </message>
    <message>
        <source>Name of the robot. One that has this name already is replaced.</source>
        <translation>Nombre del robot. Si ya hay uno con este nombre, se sustituye.</translation>
    </message>
</context>
<context>
    <name>Connecting</name>
    <message>
        <source>asking the desktop&apos;s keyring for the password</source>
        <translation>pidiendo la contraseña al llavero del escritorio</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Conectando con %1...</translation>
    </message>
    <message>
        <source>Connecting to %1: %2...</source>
        <translation>Conectando con %1: %2...</translation>
    </message>
    <message>
        <source>There is no connection to %1.

%2

Check the address and the port, what the robot asks for (user, password, encryption), and whether it is on.</source>
        <translation>No hay conexión con %1.

%2

Compruebe la dirección y el puerto, lo que pide el robot (usuario, contraseña, cifrado) y si está encendido.</translation>
    </message>
</context>
<context>
    <name>ConnectionAttempt</name>
    <message>
        <source>looking up the address</source>
        <translation>buscando la dirección</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>conectando</translation>
    </message>
    <message>
        <source>setting up the encryption</source>
        <translation>estableciendo el cifrado</translation>
    </message>
    <message>
        <source>logging in</source>
        <translation>iniciando sesión</translation>
    </message>
    <message>
        <source>trying</source>
        <translation>intentándolo</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%1 a través de %2</translation>
    </message>
</context>
<context>
    <name>ConnectionForm</name>
    <message>
        <source>%1 as %2</source>
        <translation>%1 como %2</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Dirección:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>no se usa</translation>
    </message>
    <message>
        <source>What the robot&apos;s keys begin with on a server of many robots, as robot7/. Keys are shown without it.</source>
        <translation>Aquello con lo que empiezan las claves del robot en un servidor de muchos robots, como robot7/. Las claves se muestran sin ello.</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Puerto:</translation>
    </message>
    <message>
        <source>Prefi&amp;x:</source>
        <translation>Prefi&amp;jo:</translation>
    </message>
    <message>
        <source>the default user</source>
        <translation>el usuario predeterminado</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Usuario:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>Contraseñ&amp;a:</translation>
    </message>
    <message>
        <source>Keep it in the desktop&apos;s keyri&amp;ng</source>
        <translation>Conservarla e&amp;n el llavero del escritorio</translation>
    </message>
    <message>
        <source>&amp;Encrypt (TLS)</source>
        <translation>Ci&amp;frar (TLS)</translation>
    </message>
    <message>
        <source>File of authorities</source>
        <translation>Archivo de autoridades</translation>
    </message>
    <message>
        <source>those of the system</source>
        <translation>las del sistema</translation>
    </message>
    <message>
        <source>Certificate to show</source>
        <translation>Certificado que mostrar</translation>
    </message>
    <message>
        <source>Key of the certificate</source>
        <translation>Clave del certificado</translation>
    </message>
    <message>
        <source>Auth&amp;orities:</source>
        <translation>Aut&amp;oridades:</translation>
    </message>
    <message>
        <source>Ce&amp;rtificate:</source>
        <translation>Certif&amp;icado:</translation>
    </message>
    <message>
        <source>&amp;Key:</source>
        <translation>C&amp;lave:</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>for a local network</source>
        <translation>para una red local</translation>
    </message>
    <message>
        <source>The longest wait for a connection, and for an answer. A slow network needs more.</source>
        <translation>La espera más larga por una conexión y por una respuesta. Una red lenta necesita más.</translation>
    </message>
    <message>
        <source>T&amp;ime-out:</source>
        <translation>Tie&amp;mpo de espera:</translation>
    </message>
    <message>
        <source>USER@HOST; empty: directly</source>
        <translation>USER@HOST; vacío: directamente</translation>
    </message>
    <message>
        <source>A host that leads to the robot, by ssh with your keys and agent.</source>
        <translation>Un equipo que lleva al robot, por ssh con sus claves y su agente.</translation>
    </message>
    <message>
        <source>&amp;By way of:</source>
        <translation>A tra&amp;vés de:</translation>
    </message>
    <message>
        <source>A certificate and its key need each other: choose both files, or none.</source>
        <translation>Un certificado y su clave se necesitan mutuamente: elija ambos archivos o ninguno.</translation>
    </message>
    <message>
        <source>The address names the port.</source>
        <translation>La dirección indica el puerto.</translation>
    </message>
    <message>
        <source>HOST or HOST:PORT. Of nodes of a cluster, or of sentinels, several with commas between.</source>
        <translation>HOST o HOST:PORT. De nodos de un clúster o de centinelas, varias separadas por comas.</translation>
    </message>
    <message>
        <source>&amp;Leads to:</source>
        <translation>Ll&amp;eva a:</translation>
    </message>
</context>
<context>
    <name>ConnectionSettings</name>
    <message>
        <source>%1 at %2</source>
        <translation>%1 en %2</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%1 a través de %2</translation>
    </message>
    <message>
        <source>ssh says:
%1</source>
        <translation>ssh dice:
%1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no file with certificates or a key: choose another</source>
        <translation>«%1» no es un archivo con certificados o una clave: elija otro</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; is not there: put it right, or choose another</source>
        <translation>el archivo «%1» no existe: corríjalo o elija otro</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; may not be read: put it right, or choose another</source>
        <translation>el archivo «%1» no se puede leer: corríjalo o elija otro</translation>
    </message>
    <message>
        <source>ssh leads to one server: give one address and no sentinel, or go there without ssh</source>
        <translation>ssh lleva a un solo servidor: indique una dirección y ningún centinela, o conéctese sin ssh</translation>
    </message>
    <message>
        <source>the name of the robot&apos;s server among its sentinels is too long, or has control characters</source>
        <translation>el nombre del servidor del robot entre sus centinelas es demasiado largo o tiene caracteres de control</translation>
    </message>
    <message>
        <source>replicas are those of a cluster, and sentinels lead to a server without one: choose one of them</source>
        <translation>las réplicas son de un clúster, y los centinelas llevan a un servidor sin clúster: elija uno de los dos</translation>
    </message>
    <message>
        <source>a replica of %1</source>
        <translation>una réplica de %1</translation>
    </message>
</context>
<context>
    <name>ConnectionStore</name>
    <message>
        <source>the robot&apos;s addresses are too long a text</source>
        <translation>las direcciones del robot son un texto demasiado largo</translation>
    </message>
</context>
<context>
    <name>ConnectionText</name>
    <message>
        <source>Connected since %1</source>
        <translation>Conectado desde %1</translation>
    </message>
    <message>
        <source>Refused, lost since %1</source>
        <translation>Rechazado, perdido desde %1</translation>
    </message>
    <message>
        <source>Disconnected since %1</source>
        <translation>Desconectado desde %1</translation>
    </message>
    <message>
        <source>Connection lost since %1</source>
        <translation>Conexión perdida desde %1</translation>
    </message>
    <message>
        <source>Interrupted since %1</source>
        <translation>Interrumpido desde %1</translation>
    </message>
    <message>
        <source>The connection is not tried again: that would not help, and might lock the account. &quot;Connect again&quot; asks for what was refused.</source>
        <translation>La conexión no se vuelve a intentar: no serviría de nada y podría bloquear la cuenta. «Conectar de nuevo» pide lo que fue rechazado.</translation>
    </message>
    <message>
        <source>The connection was closed on request. &quot;Reconnect&quot; opens it again.</source>
        <translation>La conexión se cerró a petición. «Reconectar» la abre de nuevo.</translation>
    </message>
    <message>
        <source>The connection is tried again and again, until it works.</source>
        <translation>La conexión se intenta una y otra vez hasta que funcione.</translation>
    </message>
    <message>
        <source>Panels have stopped fetching: once connected, start it again in each, where it says how it fetches.</source>
        <translation>Los paneles han dejado de leer valores: una vez conectado, reanude la lectura en cada uno, donde dice cómo lee.</translation>
    </message>
    <message>
        <source>Panels then go on by themselves.</source>
        <translation>Los paneles continúan entonces por sí solos.</translation>
    </message>
    <message>
        <source>Not trying again: %1</source>
        <translation>No se reintenta: %1</translation>
    </message>
    <message>
        <source>Trying again: %1</source>
        <translation>Reintentando: %1</translation>
    </message>
    <message>
        <source>Refused: </source>
        <translation>Rechazado: </translation>
    </message>
    <message>
        <source>Disconnected: </source>
        <translation>Desconectado: </translation>
    </message>
    <message>
        <source>Lost: </source>
        <translation>Perdido: </translation>
    </message>
    <message>
        <source>Interrupted: </source>
        <translation>Interrumpido: </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Nothing new comes in: values are the last ones that came, and curves drawn since then are no new data.</source>
        <translation>No llega nada nuevo: los valores son los últimos que llegaron, y las curvas dibujadas desde entonces no son datos nuevos.</translation>
    </message>
    <message>
        <source>Panels that were open when the connection was lost have stopped fetching, and show what came before. Start it again in each, where it says how it fetches.</source>
        <translation>Los paneles que estaban abiertos cuando se perdió la conexión han dejado de leer y muestran lo que llegó antes. Reanude la lectura en cada uno, donde dice cómo lee.</translation>
    </message>
    <message numerus="yes">
        <source>Concerns %1 of %n panels; the others go on.</source>
        <translation>
            <numerusform>Afecta a %1 de %n panel; los demás continúan.</numerusform>
            <numerusform>Afecta a %1 de %n paneles; los demás continúan.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>No panel opens %1.

Give a configuration that a panel has saved, or a workspace (*.tarvek).</source>
        <translation>Ningún panel abre %1.

Indique una configuración que haya guardado un panel, o un espacio de trabajo (*.tarvek).</translation>
    </message>
    <message>
        <source>There is no panel &quot;%1&quot;. Found: %2</source>
        <translation>No hay ningún panel «%1». Encontrados: %2</translation>
    </message>
    <message>
        <source>none</source>
        <translation>ninguno</translation>
    </message>
    <message numerus="yes">
        <source>

%n plug-in(s) could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</source>
        <translation>
            <numerusform>

No se pudo cargar %n complemento: «Ayuda», «Complementos que fallaron...» dice por qué.</numerusform>
            <numerusform>

No se pudieron cargar %n complementos: «Ayuda», «Complementos que fallaron...» dice por qué.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) are running. Quitting ends them; their files are kept.</source>
        <translation>
            <numerusform>%n grabación está en curso. Al salir termina; su archivo se conserva.</numerusform>
            <numerusform>%n grabaciones están en curso. Al salir terminan; sus archivos se conservan.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and quit</source>
        <translation>&amp;Terminar las grabaciones y salir</translation>
    </message>
</context>
<context>
    <name>DockTitle</name>
    <message>
        <source>Detach or attach the panel</source>
        <translation>Separar o acoplar el panel</translation>
    </message>
    <message>
        <source>Close the panel</source>
        <translation>Cerrar el panel</translation>
    </message>
    <message>
        <source>Title of the panel</source>
        <translation>Título del panel</translation>
    </message>
    <message>
        <source>Drag to move the panel, double-click to rename it</source>
        <translation>Arrastre para mover el panel, haga doble clic para cambiarle el nombre</translation>
    </message>
</context>
<context>
    <name>EndingQuestion</name>
    <message>
        <source>Recordings are running</source>
        <translation>Hay grabaciones en curso</translation>
    </message>
</context>
<context>
    <name>ErrorReporter</name>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n más en los detalles.</numerusform>
            <numerusform>%n más en los detalles.</numerusform>
        </translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>FileField</name>
    <message>
        <source>PEM files (*.pem *.crt *.key)</source>
        <translation>Archivos PEM (*.pem *.crt *.key)</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Examinar...</translation>
    </message>
</context>
<context>
    <name>FileMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Archivo</translation>
    </message>
    <message>
        <source>&amp;New connection...</source>
        <translation>&amp;Nueva conexión...</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>R&amp;ecord...</source>
        <translation>Gra&amp;bar...</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Desconectar</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Reconectar</translation>
    </message>
    <message>
        <source>Wa&amp;it for the robot...</source>
        <translation>&amp;Esperar al robot...</translation>
    </message>
    <message>
        <source>&amp;Close panel</source>
        <translation>&amp;Cerrar panel</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>Close &amp;window</source>
        <translation>Cerrar &amp;ventana</translation>
    </message>
    <message>
        <source>Ctrl+Shift+W</source>
        <translation>Ctrl+Shift+W</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Salir</translation>
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
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Find in the table</source>
        <translation>Buscar en la tabla</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Coincidencia anterior</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Coincidencia siguiente</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>No hay ninguna tabla en este panel.</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>No se encontró</translation>
    </message>
    <message numerus="yes">
        <source>%n match(es), %1 % searched</source>
        <translation>
            <numerusform>%n coincidencia, %1 % recorrido</numerusform>
            <numerusform>%n coincidencias, %1 % recorrido</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n match(es)</source>
        <translation>
            <numerusform>%n coincidencia</numerusform>
            <numerusform>%n coincidencias</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Guide</name>
    <message>
        <source>The guide is not there: %1 is missing or cannot be read. Install the program&apos;s documents, too.</source>
        <translation>La guía no está: falta %1 o no se puede leer. Instale también los documentos del programa.</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>Guía</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;yuda</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Guía</translation>
    </message>
    <message>
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message>
        <source>&amp;Shortcuts...</source>
        <translation>&amp;Atajos de teclado...</translation>
    </message>
    <message>
        <source>&amp;Plug-ins that failed (%1)...</source>
        <translation>&amp;Complementos que fallaron (%1)...</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostics</source>
        <translation>Copiar el &amp;diagnóstico</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Acerca d&amp;e</translation>
    </message>
    <message>
        <source>Copied: paste it into your report</source>
        <translation>Copiado: péguelo en su informe</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>%1 %2

Shows tool panels for robots on the network.</source>
        <translation>%1 %2

Muestra paneles de herramientas para robots en la red.</translation>
    </message>
</context>
<context>
    <name>KeptPasswords</name>
    <message>
        <source>The password is not kept: %1</source>
        <translation>La contraseña no se conserva: %1</translation>
    </message>
</context>
<context>
    <name>LossLimitDialog</name>
    <message>
        <source>Wait for the robot</source>
        <translation>Esperar al robot</translation>
    </message>
    <message>
        <source>Minutes that panels wait for a robot that is away before they give up (0: none):</source>
        <translation>Minutos que los paneles esperan a un robot ausente antes de rendirse (0: ninguno):</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Editar</translation>
    </message>
    <message numerus="yes">
        <source>%1 (%n panel(s)). %2</source>
        <translation>
            <numerusform>%1 (%n panel). %2</numerusform>
            <numerusform>%1 (%n paneles). %2</numerusform>
        </translation>
    </message>
    <message>
        <source>The start-up dialog of another panel is still open.</source>
        <translation>El diálogo de inicio de otro panel sigue abierto.</translation>
    </message>
    <message>
        <source>The error does not describe itself.</source>
        <translation>El error no se describe.</translation>
    </message>
    <message>
        <source>The panel &quot;%1&quot; cannot be opened.

%2</source>
        <translation>El panel «%1» no se puede abrir.

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
        <translation>el servidor o clúster del robot</translation>
    </message>
    <message>
        <source>a replica in its cluster</source>
        <translation>una réplica en su clúster</translation>
    </message>
    <message>
        <source>sentinels of</source>
        <translation>los centinelas de</translation>
    </message>
    <message>
        <source>What the address leads to</source>
        <translation>A qué lleva la dirección</translation>
    </message>
    <message>
        <source>A replica takes work off the node that is written to; its values may be late. Sentinels know which of several servers is the robot&apos;s.</source>
        <translation>Una réplica descarga al nodo en el que se escribe; sus valores pueden llegar con retraso. Los centinelas saben cuál de varios servidores es el del robot.</translation>
    </message>
    <message>
        <source>Name of the server</source>
        <translation>Nombre del servidor</translation>
    </message>
    <message>
        <source>the server&apos;s name</source>
        <translation>el nombre del servidor</translation>
    </message>
    <message>
        <source>Sentinels watch several servers: say what they call the robot&apos;s, or choose what else the address leads to.</source>
        <translation>Los centinelas vigilan varios servidores: indique cómo llaman al del robot, o elija a qué otra cosa lleva la dirección.</translation>
    </message>
</context>
<context>
    <name>OutageBar</name>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Desconectar</translation>
    </message>
    <message>
        <source>Do not wait for the robot any longer</source>
        <translation>No esperar más al robot</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Reconectar</translation>
    </message>
    <message>
        <source>Open the connection again, at once</source>
        <translation>Abrir de nuevo la conexión, ahora mismo</translation>
    </message>
    <message>
        <source>Connect &amp;again...</source>
        <translation>Conectar de n&amp;uevo...</translation>
    </message>
    <message>
        <source>Give the user, password or certificates that the robot wants</source>
        <translation>Indicar el usuario, la contraseña o los certificados que pide el robot</translation>
    </message>
    <message>
        <source>&amp;Understood</source>
        <translation>En&amp;tendido</translation>
    </message>
    <message>
        <source>Hide this</source>
        <translation>Ocultar esto</translation>
    </message>
</context>
<context>
    <name>PanelCommands</name>
    <message>
        <source>&amp;Save picture...</source>
        <translation>Guardar &amp;imagen...</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Save &amp;table as CSV...</source>
        <translation>Guardar &amp;tabla como CSV...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>&amp;Copy cell</source>
        <translation>&amp;Copiar celda</translation>
    </message>
    <message>
        <source>Copy &amp;row</source>
        <translation>Copiar &amp;fila</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Copy &amp;all</source>
        <translation>Copiar &amp;todo</translation>
    </message>
    <message>
        <source>Copy &amp;picture</source>
        <translation>Copiar &amp;imagen</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Buscar...</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>Buscar &amp;siguiente</translation>
    </message>
    <message>
        <source>F3</source>
        <translation>F3</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>Buscar &amp;anterior</translation>
    </message>
    <message>
        <source>Shift+F3</source>
        <translation>Shift+F3</translation>
    </message>
    <message>
        <source>&amp;Next panel</source>
        <translation>Panel &amp;siguiente</translation>
    </message>
    <message>
        <source>Ctrl+Tab</source>
        <translation>Ctrl+Tab</translation>
    </message>
    <message>
        <source>&amp;Previous panel</source>
        <translation>Panel &amp;anterior</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Tab</source>
        <translation>Ctrl+Shift+Tab</translation>
    </message>
    <message>
        <source>&amp;Detach or attach</source>
        <translation>S&amp;eparar o acoplar</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Cambiar nombre...</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>No hay ninguna tabla en este panel.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>Se guardó %1</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Guardar imagen</translation>
    </message>
    <message>
        <source>Picture (*.png)</source>
        <translation>Imagen (*.png)</translation>
    </message>
    <message>
        <source>Document, sharp at any size (*.pdf)</source>
        <translation>Documento, nítido a cualquier tamaño (*.pdf)</translation>
    </message>
    <message>
        <source>Save table</source>
        <translation>Guardar tabla</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>Valores separados por comas (*.csv)</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copiado</translation>
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
        <translation>Su diálogo de inicio sigue abierto.</translation>
    </message>
    <message>
        <source>Open the panel again when the robot is connected.</source>
        <translation>Abra de nuevo el panel cuando el robot esté conectado.</translation>
    </message>
    <message>
        <source>The robot is not connected yet.</source>
        <translation>El robot aún no está conectado.</translation>
    </message>
</context>
<context>
    <name>PanelMenu</name>
    <message>
        <source>&amp;Panels</source>
        <translation>&amp;Paneles</translation>
    </message>
    <message>
        <source>(none found)</source>
        <translation>(no se encontró ninguno)</translation>
    </message>
</context>
<context>
    <name>Picture</name>
    <message>
        <source>The picture cannot be saved as %1: let the name end in .png or .pdf.</source>
        <translation>La imagen no se puede guardar como %1: el nombre debe terminar en .png o .pdf.</translation>
    </message>
    <message>
        <source>There is nothing in the picture to save.</source>
        <translation>No hay nada en la imagen que guardar.</translation>
    </message>
</context>
<context>
    <name>PluginFailuresDialog</name>
    <message>
        <source>Plug-ins that failed</source>
        <translation>Complementos que fallaron</translation>
    </message>
    <message>
        <source>Looked in: %1</source>
        <translation>Se buscó en: %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>Every plug-in was loaded.</source>
        <translation>Se cargaron todos los complementos.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Archivo</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Motivo</translation>
    </message>
</context>
<context>
    <name>PluginLoader</name>
    <message>
        <source>It is no plug-in: %1</source>
        <translation>No es un complemento: %1</translation>
    </message>
    <message>
        <source>It offers the interface &quot;%1&quot;, but panels have &quot;%2&quot;. Get a version made for this program.</source>
        <translation>Ofrece la interfaz «%1», pero los paneles tienen «%2». Consiga una versión hecha para este programa.</translation>
    </message>
    <message>
        <source>It is loaded, but makes no plug-in object.</source>
        <translation>Está cargado, pero no crea ningún objeto de complemento.</translation>
    </message>
    <message>
        <source>Its plug-in object (%1) has no panel interface.</source>
        <translation>Su objeto de complemento (%1) no tiene la interfaz de un panel.</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>No existe esa carpeta.</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>No existe ese archivo.</translation>
    </message>
    <message>
        <source>It failed in a way it does not describe.</source>
        <translation>Falló de una manera que no describe.</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>It is no plug-in: the file is empty.</source>
        <translation>No es un complemento: el archivo está vacío.</translation>
    </message>
    <message>
        <source>It was built with Qt %1, and this program with Qt %2. Get a version made for this program.</source>
        <translation>Se compiló con Qt %1, y este programa con Qt %2. Consiga una versión hecha para este programa.</translation>
    </message>
</context>
<context>
    <name>Recording</name>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>No se puede iniciar %1: %2</translation>
    </message>
    <message>
        <source>The recording of %1 has ended, with warnings.</source>
        <translation>La grabación de %1 ha terminado, con advertencias.</translation>
    </message>
    <message>
        <source>The recording of %1 has ended with an error (exit status %2).</source>
        <translation>La grabación de %1 ha terminado con un error (estado de salida %2).</translation>
    </message>
    <message>
        <source>The recording of %1 did not end within %2 s, and was killed.</source>
        <translation>La grabación de %1 no terminó en %2 s y fue interrumpida.</translation>
    </message>
    <message>
        <source>The recording of %1 was killed, or crashed.</source>
        <translation>La grabación de %1 fue interrumpida o falló.</translation>
    </message>
    <message>
        <source>File: %1</source>
        <translation>Archivo: %1</translation>
    </message>
</context>
<context>
    <name>RecordingBar</name>
    <message>
        <source>Recordings</source>
        <translation>Grabaciones</translation>
    </message>
</context>
<context>
    <name>RecordingDialog</name>
    <message>
        <source>Configuration files (*.xml);;All files (*)</source>
        <translation>Archivos de configuración (*.xml);;Todos los archivos (*)</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv);;All files (*)</source>
        <translation>Valores separados por comas (*.csv);;Todos los archivos (*)</translation>
    </message>
    <message>
        <source>Record %1</source>
        <translation>Grabar %1</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Grabar</translation>
    </message>
    <message>
        <source>What a &amp;configuration file watches:</source>
        <translation>Lo que observa un archivo de &amp;configuración:</translation>
    </message>
    <message>
        <source>Configuration file</source>
        <translation>Archivo de configuración</translation>
    </message>
    <message>
        <source>a file that a panel has saved</source>
        <translation>un archivo que haya guardado un panel</translation>
    </message>
    <message>
        <source>These &amp;keys, one a line:</source>
        <translation>Estas c&amp;laves, una por línea:</translation>
    </message>
    <message>
        <source>&amp;All keys that the robot has at the start</source>
        <translation>&amp;Todas las claves que el robot tiene al empezar</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>Only what c&amp;hanged: a row for each value</source>
        <translation>Solo lo &amp;que cambió: una fila para cada valor</translation>
    </message>
    <message>
        <source>Call col&amp;umns by keys, not by aliases</source>
        <translation>No&amp;mbrar las columnas por claves, no por alias</translation>
    </message>
    <message>
        <source>So that a robot that plays the recording has these keys</source>
        <translation>Para que un robot que reproduzca la grabación tenga estas claves</translation>
    </message>
    <message>
        <source>An empty row where the robot was &amp;lost</source>
        <translation>&amp;Una fila vacía donde se perdió el robot</translation>
    </message>
    <message>
        <source>A row e&amp;very:</source>
        <translation>Una &amp;fila cada:</translation>
    </message>
    <message>
        <source>File to record into</source>
        <translation>Archivo donde grabar</translation>
    </message>
    <message>
        <source>Another &amp;file every</source>
        <translation>Otro a&amp;rchivo cada</translation>
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
        <translation>minutos</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>horas</translation>
    </message>
    <message>
        <source>days</source>
        <translation>días</translation>
    </message>
    <message>
        <source>&amp;Into:</source>
        <translation>&amp;En:</translation>
    </message>
    <message>
        <source>Choose a configuration file, or say otherwise what to record.</source>
        <translation>Elija un archivo de configuración o indique de otro modo qué grabar.</translation>
    </message>
    <message>
        <source>There is no file %1. Choose one that a panel has saved.</source>
        <translation>No existe el archivo %1. Elija uno que haya guardado un panel.</translation>
    </message>
    <message>
        <source>Enter the keys to record, one a line.</source>
        <translation>Introduzca las claves que grabar, una por línea.</translation>
    </message>
    <message>
        <source>Choose the file to record into.</source>
        <translation>Elija el archivo donde grabar.</translation>
    </message>
    <message>
        <source>%1 is a folder. Add the name of the file to record into.</source>
        <translation>%1 es una carpeta. Añada el nombre del archivo donde grabar.</translation>
    </message>
    <message>
        <source>The file is there already</source>
        <translation>El archivo ya existe</translation>
    </message>
    <message>
        <source>%1 is there already. Go on behind its last row? It is never replaced; if it is no recording of the same columns, it is left as it is, and nothing is recorded.</source>
        <translation>%1 ya existe. ¿Continuar después de su última fila? Nunca se sustituye; si no es una grabación con las mismas columnas, se deja como está y no se graba nada.</translation>
    </message>
    <message>
        <source>&amp;Go on behind it</source>
        <translation>C&amp;ontinuar detrás</translation>
    </message>
</context>
<context>
    <name>RecordingPlan</name>
    <message>
        <source>The program zo-record, which records, is missing. Install the package zo-record, or put the program beside tarvek-desktop, or into a folder of PATH.</source>
        <translation>Falta el programa zo-record, que es el que graba. Instale el paquete zo-record o ponga el programa junto a tarvek-desktop o en una carpeta de PATH.</translation>
    </message>
</context>
<context>
    <name>RecordingRow</name>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>End this recording; its file is kept</source>
        <translation>Terminar esta grabación; su archivo se conserva</translation>
    </message>
    <message>
        <source>is being ended</source>
        <translation>está terminando</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1, from %2</source>
        <translation>%1, desde %2</translation>
    </message>
    <message>
        <source>Stop recording %1</source>
        <translation>Detener la grabación %1</translation>
    </message>
</context>
<context>
    <name>RecordingState</name>
    <message>
        <source>starting</source>
        <translation>iniciando</translation>
    </message>
    <message>
        <source>waits for the robot</source>
        <translation>esperando al robot</translation>
    </message>
    <message numerus="yes">
        <source>%1 rows</source>
        <translation>
            <numerusform>%1 fila</numerusform>
            <numerusform>%1 filas</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 polls missed</source>
        <translation>
            <numerusform>%1 lectura perdida</numerusform>
            <numerusform>%1 lecturas perdidas</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 values too large</source>
        <translation>
            <numerusform>%1 valor demasiado grande</numerusform>
            <numerusform>%1 valores demasiado grandes</numerusform>
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
        <translation>claves sin valor: %1</translation>
    </message>
</context>
<context>
    <name>Recordings</name>
    <message>
        <source>The password of this robot has a line break, which the recorder cannot be given. Give the robot&apos;s user another password, or connect as another user.</source>
        <translation>La contraseña de este robot tiene un salto de línea, que no se puede pasar al grabador. Dé otra contraseña al usuario del robot o conéctese como otro usuario.</translation>
    </message>
    <message numerus="yes">
        <source>%n recordings are running in this window: end one of them first.</source>
        <translation>
            <numerusform>Hay %n grabación en curso en esta ventana: termínela primero.</numerusform>
            <numerusform>Hay %n grabaciones en curso en esta ventana: termine una de ellas primero.</numerusform>
        </translation>
    </message>
    <message>
        <source>Recorded %1: %2</source>
        <translation>%1 grabado: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) of this window are running. Closing it ends them; their files are kept.</source>
        <translation>
            <numerusform>%n grabación de esta ventana está en curso. Al cerrarla termina; su archivo se conserva.</numerusform>
            <numerusform>%n grabaciones de esta ventana están en curso. Al cerrarla terminan; sus archivos se conservan.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and close</source>
        <translation>&amp;Terminar las grabaciones y cerrar</translation>
    </message>
</context>
<context>
    <name>RobotList</name>
    <message>
        <source>Robots that you have saved. A double click renames one.</source>
        <translation>Robots que ha guardado. Un doble clic cambia el nombre de uno.</translation>
    </message>
    <message>
        <source>Sa&amp;ved robots:</source>
        <translation>&amp;Robots guardados:</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Bajar</translation>
    </message>
    <message>
        <source>Delete...</source>
        <translation>Eliminar...</translation>
    </message>
    <message>
        <source>Delete a robot</source>
        <translation>Eliminar un robot</translation>
    </message>
    <message>
        <source>Delete the saved robot &quot;%1&quot;?</source>
        <translation>¿Eliminar el robot guardado «%1»?</translation>
    </message>
</context>
<context>
    <name>RobotOpening</name>
    <message>
        <source>The way there is not encrypted: whoever listens on it can read the password.</source>
        <translation>El camino no está cifrado: quien lo escuche puede leer la contraseña.</translation>
    </message>
    <message>
        <source>The way from %1 on is not encrypted: whoever listens on it can read the password.</source>
        <translation>El camino desde %1 no está cifrado: quien lo escuche puede leer la contraseña.</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>Password for the robot %1:</source>
        <translation>Contraseña para el robot %1:</translation>
    </message>
    <message>
        <source>Password of &quot;%1&quot; for the robot %2:</source>
        <translation>Contraseña de «%1» para el robot %2:</translation>
    </message>
</context>
<context>
    <name>SavedFile</name>
    <message>
        <source>%1 cannot be saved: %2</source>
        <translation>No se puede guardar %1: %2</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Shortcuts</source>
        <translation>Atajos de teclado</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Teclas</translation>
    </message>
    <message>
        <source>What they do</source>
        <translation>Qué hacen</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Intro</translation>
    </message>
    <message>
        <source>Next match, in the bar to find with</source>
        <translation>Coincidencia siguiente, en la barra de búsqueda</translation>
    </message>
    <message>
        <source>Shift+Return</source>
        <translation>Mayús+Intro</translation>
    </message>
    <message>
        <source>Previous match, there</source>
        <translation>Coincidencia anterior, en el mismo sitio</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Close the bar, or give a title its old text</source>
        <translation>Cerrar la barra o devolver a un título su texto anterior</translation>
    </message>
</context>
<context>
    <name>SshQuestion</name>
    <message>
        <source>ssh asks</source>
        <translation>ssh pregunta</translation>
    </message>
</context>
<context>
    <name>SshRelay</name>
    <message>
        <source>&apos;%1&apos; is no host for ssh: write USER@HOST, as in pilot@gate-3, or a name that ssh&apos;s configuration knows</source>
        <translation>«%1» no es un equipo para ssh: escriba USER@HOST, como pilot@gate-3, o un nombre que conozca la configuración de ssh</translation>
    </message>
    <message>
        <source>the folder for temporary files has too long a name: %1</source>
        <translation>la carpeta de archivos temporales tiene un nombre demasiado largo: %1</translation>
    </message>
</context>
<context>
    <name>StartPage</name>
    <message>
        <source>Choose a panel:</source>
        <translation>Elija un panel:</translation>
    </message>
    <message>
        <source>

Some files could not be used: see &quot;Help&quot;, &quot;Plug-ins that failed&quot;.</source>
        <translation>

Algunos archivos no se pudieron usar: vea «Ayuda», «Complementos que fallaron».</translation>
    </message>
    <message>
        <source>No panel was found. Panels were looked for in:
%1

Start the program with --plugin-dir DIR or --plugin FILE to say where they are.</source>
        <translation>No se encontró ningún panel. Se buscaron en:
%1

Inicie el programa con --plugin-dir DIR o --plugin FILE para indicar dónde están.</translation>
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
        <translation>hace %1 ms</translation>
    </message>
    <message>
        <source>%1 s ago</source>
        <translation>hace %1 s</translation>
    </message>
    <message>
        <source>%1 min ago</source>
        <translation>hace %1 min</translation>
    </message>
    <message>
        <source>%1 h ago</source>
        <translation>hace %1 h</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>changes only</source>
        <translation>solo cambios</translation>
    </message>
    <message>
        <source>everything</source>
        <translation>todo</translation>
    </message>
    <message>
        <source>the robot tells what was written, and only that is read</source>
        <translation>el robot indica lo que se escribió y solo se lee eso</translation>
    </message>
    <message>
        <source>every value is read each time</source>
        <translation>cada valor se lee cada vez</translation>
    </message>
    <message>
        <source>no values are followed</source>
        <translation>no se sigue ningún valor</translation>
    </message>
    <message>
        <source>%1 answers/s</source>
        <translation>%1 respuestas/s</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>aún ninguna</translation>
    </message>
    <message>
        <source>Round trip: %1</source>
        <translation>Ida y vuelta: %1</translation>
    </message>
    <message>
        <source>Newest answer: %1</source>
        <translation>Última respuesta: %1</translation>
    </message>
    <message>
        <source>Answers: %1/s</source>
        <translation>Respuestas: %1/s</translation>
    </message>
    <message>
        <source>Received: %1</source>
        <translation>Recibido: %1</translation>
    </message>
    <message>
        <source>Sent: %1</source>
        <translation>Enviado: %1</translation>
    </message>
    <message>
        <source>Following: %1</source>
        <translation>Seguimiento: %1</translation>
    </message>
</context>
<context>
    <name>WorkspaceFile</name>
    <message>
        <source>it is no file</source>
        <translation>no es un archivo</translation>
    </message>
    <message>
        <source>it is larger than %1 MiB</source>
        <translation>es mayor de %1 MiB</translation>
    </message>
    <message>
        <source>The workspace %1 cannot be opened: %2.

Choose a file that &quot;Save workspace&quot; wrote.</source>
        <translation>El espacio de trabajo %1 no se puede abrir: %2.

Elija un archivo escrito por «Guardar espacio de trabajo».</translation>
    </message>
    <message>
        <source>it would be larger than %1 MiB</source>
        <translation>sería mayor de %1 MiB</translation>
    </message>
    <message>
        <source>%1 cannot be saved: %2.</source>
        <translation>No se puede guardar %1: %2.</translation>
    </message>
</context>
<context>
    <name>WorkspaceMenu</name>
    <message>
        <source>&amp;Open workspace...</source>
        <translation>&amp;Abrir espacio de trabajo...</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Recent wor&amp;kspaces</source>
        <translation>Espacios de traba&amp;jo recientes</translation>
    </message>
    <message>
        <source>Sa&amp;ve workspace...</source>
        <translation>&amp;Guardar espacio de trabajo...</translation>
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
        <translation>Robot %1: %2</translation>
    </message>
    <message>
        <source>Not all of the workspace could be opened:

%1</source>
        <translation>No se pudo abrir todo el espacio de trabajo:

%1</translation>
    </message>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>%n más en los detalles.</numerusform>
            <numerusform>%n más en los detalles.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Connecting to
%1</source>
        <translation>Conectando con
%1</translation>
    </message>
    <message>
        <source>%1: not tried to the end</source>
        <translation>%1: no se intentó hasta el final</translation>
    </message>
    <message>
        <source>Panel &quot;%1&quot; of %2: there is no such plug-in here. &quot;Help&quot;, &quot;Plug-ins that failed...&quot; may say why.</source>
        <translation>Panel «%1» de %2: no existe aquí ese complemento. Quizá «Ayuda», «Complementos que fallaron...» diga por qué.</translation>
    </message>
    <message>
        <source>Try &amp;again</source>
        <translation>Re&amp;intentar</translation>
    </message>
    <message>
        <source>&amp;Leave out panels without a plug-in when the workspace is saved again</source>
        <translation>&amp;Omitir los paneles sin complemento al volver a guardar el espacio de trabajo</translation>
    </message>
</context>
<context>
    <name>WorkspaceText</name>
    <message>
        <source>&quot;%1&quot; is no text, or too long</source>
        <translation>«%1» no es un texto o es demasiado largo</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has characters that no text of one line has</source>
        <translation>«%1» tiene caracteres que ningún texto de una línea tiene</translation>
    </message>
    <message>
        <source>no plug-in is named</source>
        <translation>no se nombra ningún complemento</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>more than %1 panels</source>
        <translation>más de %1 paneles</translation>
    </message>
    <message>
        <source>%1, panel %2</source>
        <translation>%1, panel %2</translation>
    </message>
    <message>
        <source>the window of %1</source>
        <translation>la ventana de %1</translation>
    </message>
    <message>
        <source>it has more than %1 windows</source>
        <translation>tiene más de %1 ventanas</translation>
    </message>
    <message>
        <source>it is no JSON: %1, at byte %2</source>
        <translation>no es JSON: %1, en el byte %2</translation>
    </message>
    <message>
        <source>it is no workspace of this program</source>
        <translation>no es un espacio de trabajo de este programa</translation>
    </message>
    <message>
        <source>Window %1</source>
        <translation>Ventana %1</translation>
    </message>
    <message>
        <source>a newer version wrote it, and this one does not understand it: choose another file</source>
        <translation>lo escribió una versión más reciente y esta no lo entiende: elija otro archivo</translation>
    </message>
</context>
<context>
    <name>Workspaces</name>
    <message>
        <source>Workspaces (*.tarvek)</source>
        <translation>Espacios de trabajo (*.tarvek)</translation>
    </message>
    <message>
        <source>Open workspace</source>
        <translation>Abrir espacio de trabajo</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Todos los archivos (*)</translation>
    </message>
    <message>
        <source>Save workspace</source>
        <translation>Guardar espacio de trabajo</translation>
    </message>
    <message>
        <source>The workspace is saved in %1</source>
        <translation>El espacio de trabajo está guardado en %1</translation>
    </message>
    <message>
        <source>A workspace is being opened already</source>
        <translation>Ya se está abriendo un espacio de trabajo</translation>
    </message>
</context>
</TS>
