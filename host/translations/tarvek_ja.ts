<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>Application</name>
    <message>
        <source>An error that does not describe itself.</source>
        <translation>内容のわからないエラーです。</translation>
    </message>
</context>
<context>
    <name>CheckDialog</name>
    <message>
        <source>ok</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>skipped</source>
        <translation>省略</translation>
    </message>
    <message>
        <source>look-up</source>
        <translation>アドレス検索</translation>
    </message>
    <message>
        <source>connection</source>
        <translation>接続</translation>
    </message>
    <message>
        <source>encryption</source>
        <translation>暗号化</translation>
    </message>
    <message>
        <source>answer</source>
        <translation>応答</translation>
    </message>
    <message>
        <source>readiness</source>
        <translation>準備状態</translation>
    </message>
    <message>
        <source>login</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>node</source>
        <translation>ノード</translation>
    </message>
    <message>
        <source>rights</source>
        <translation>権限</translation>
    </message>
    <message>
        <source>server</source>
        <translation>サーバー</translation>
    </message>
    <message>
        <source>keys</source>
        <translation>キー</translation>
    </message>
    <message>
        <source>round trip</source>
        <translation>往復時間</translation>
    </message>
    <message>
        <source>notices</source>
        <translation>通知</translation>
    </message>
    <message>
        <source>Check the name, or enter the address itself.</source>
        <translation>名前を確認するか、アドレスそのものを入力してください。</translation>
    </message>
    <message>
        <source>Is the robot on, does its memory listen to this network at this port, and does no firewall stand between?</source>
        <translation>ロボットの電源は入っていますか。メモリはこのネットワークのこのポートで待ち受けていますか。途中にファイアウォールはありませんか。</translation>
    </message>
    <message>
        <source>Does the robot speak TLS at this port? Is the file of authorities that of the one who signed its certificate?</source>
        <translation>ロボットはこのポートで TLS を使っていますか。認証局のファイルは、証明書に署名した認証局のものですか。</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, and does it want to see a certificate?</source>
        <translation>これはロボットのメモリですか。証明書を求めていませんか。</translation>
    </message>
    <message>
        <source>Is it a robot&apos;s memory, does it hang, or does it want encryption?</source>
        <translation>これはロボットのメモリですか。応答が止まっていませんか。暗号化を求めていませんか。</translation>
    </message>
    <message>
        <source>Try again in a while.</source>
        <translation>しばらくしてからもう一度お試しください。</translation>
    </message>
    <message>
        <source>Check user and password.</source>
        <translation>ユーザーとパスワードを確認してください。</translation>
    </message>
    <message>
        <source>The robot&apos;s access list must allow this user SCAN, MGET, and to read the keys.</source>
        <translation>ロボットのアクセスリストで、このユーザーに SCAN、MGET、キーの読み取りを許可する必要があります。</translation>
    </message>
    <message>
        <source>Test of %1</source>
        <translation>%1 のテスト</translation>
    </message>
    <message>
        <source>Looking up the address...</source>
        <translation>アドレスを検索しています...</translation>
    </message>
    <message>
        <source>%1 - %2: %3</source>
        <translation>%1 - %2: %3</translation>
    </message>
    <message>
        <source>
All that a panel needs works.</source>
        <translation>
パネルに必要なものはすべて動作しています。</translation>
    </message>
    <message>
        <source>
A panel would not work with this robot.</source>
        <translation>
このロボットではパネルは動作しません。</translation>
    </message>
</context>
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Connect to a robot</source>
        <translation>ロボットに接続</translation>
    </message>
    <message>
        <source>&amp;Test...</source>
        <translation>テスト(&amp;T)...</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>保存(&amp;S)...</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>接続(&amp;C)</translation>
    </message>
    <message>
        <source>Save the robot</source>
        <translation>ロボットの保存</translation>
    </message>
    <message>
        <source>Name of the robot. One that has this name already is replaced.</source>
        <translation>ロボットの名前。同じ名前のものは置き換えられます。</translation>
    </message>
</context>
<context>
    <name>Connecting</name>
    <message>
        <source>asking the desktop&apos;s keyring for the password</source>
        <translation>デスクトップのキーリングにパスワードを問い合わせ中</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>%1 に接続しています...</translation>
    </message>
    <message>
        <source>Connecting to %1: %2...</source>
        <translation>%1 に接続しています: %2...</translation>
    </message>
    <message>
        <source>There is no connection to %1.

%2

Check the address and the port, what the robot asks for (user, password, encryption), and whether it is on.</source>
        <translation>%1 に接続できません。

%2

アドレスとポート、ロボットが求めるもの (ユーザー、パスワード、暗号化)、電源が入っているかを確認してください。</translation>
    </message>
</context>
<context>
    <name>ConnectionAttempt</name>
    <message>
        <source>looking up the address</source>
        <translation>アドレスを検索中</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>接続中</translation>
    </message>
    <message>
        <source>setting up the encryption</source>
        <translation>暗号化を設定中</translation>
    </message>
    <message>
        <source>logging in</source>
        <translation>ログイン中</translation>
    </message>
    <message>
        <source>trying</source>
        <translation>試行中</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%2 経由の %1</translation>
    </message>
</context>
<context>
    <name>ConnectionForm</name>
    <message>
        <source>%1 as %2</source>
        <translation>%1 (ユーザー %2)</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>アドレス(&amp;A):</translation>
    </message>
    <message>
        <source>none</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>What the robot&apos;s keys begin with on a server of many robots, as robot7/. Keys are shown without it.</source>
        <translation>複数のロボットが使うサーバーで、このロボットのキーの先頭に付く文字列 (robot7/ など)。キーはこれを除いて表示されます。</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>ポート(&amp;P):</translation>
    </message>
    <message>
        <source>Prefi&amp;x:</source>
        <translation>プレフィックス(&amp;X):</translation>
    </message>
    <message>
        <source>the default user</source>
        <translation>既定のユーザー</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>ユーザー(&amp;U):</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>パスワード(&amp;W):</translation>
    </message>
    <message>
        <source>Keep it in the desktop&apos;s keyri&amp;ng</source>
        <translation>デスクトップのキーリングに保存(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Encrypt (TLS)</source>
        <translation>暗号化 (TLS)(&amp;E)</translation>
    </message>
    <message>
        <source>File of authorities</source>
        <translation>認証局のファイル</translation>
    </message>
    <message>
        <source>those of the system</source>
        <translation>システムのもの</translation>
    </message>
    <message>
        <source>Certificate to show</source>
        <translation>提示する証明書</translation>
    </message>
    <message>
        <source>Key of the certificate</source>
        <translation>証明書の鍵</translation>
    </message>
    <message>
        <source>Auth&amp;orities:</source>
        <translation>認証局(&amp;O):</translation>
    </message>
    <message>
        <source>Ce&amp;rtificate:</source>
        <translation>証明書(&amp;R):</translation>
    </message>
    <message>
        <source>&amp;Key:</source>
        <translation>鍵(&amp;K):</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>for a local network</source>
        <translation>ローカルネットワーク向け</translation>
    </message>
    <message>
        <source>The longest wait for a connection, and for an answer. A slow network needs more.</source>
        <translation>接続と応答を待つ最長の時間。遅いネットワークではもっと必要です。</translation>
    </message>
    <message>
        <source>T&amp;ime-out:</source>
        <translation>タイムアウト(&amp;I):</translation>
    </message>
    <message>
        <source>USER@HOST; empty: directly</source>
        <translation>USER@HOST。空欄なら直接</translation>
    </message>
    <message>
        <source>A host that leads to the robot, by ssh with your keys and agent.</source>
        <translation>ロボットへの経路となるホスト。あなたの鍵とエージェントを使い ssh で接続します。</translation>
    </message>
    <message>
        <source>&amp;By way of:</source>
        <translation>経由(&amp;B):</translation>
    </message>
    <message>
        <source>A certificate and its key need each other: choose both files, or none.</source>
        <translation>証明書とその鍵は両方必要です。両方のファイルを選ぶか、どちらも選ばないでください。</translation>
    </message>
    <message>
        <source>The address names the port.</source>
        <translation>アドレスでポートが指定されています。</translation>
    </message>
    <message>
        <source>HOST or HOST:PORT. Of nodes of a cluster, or of sentinels, several with commas between.</source>
        <translation>HOST または HOST:PORT。クラスターのノードやセンチネルは、コンマで区切って複数指定できます。</translation>
    </message>
    <message>
        <source>&amp;Leads to:</source>
        <translation>接続先の種類(&amp;L):</translation>
    </message>
</context>
<context>
    <name>ConnectionSettings</name>
    <message>
        <source>%1 at %2</source>
        <translation>%2 の %1</translation>
    </message>
    <message>
        <source>%1 by way of %2</source>
        <translation>%2 経由の %1</translation>
    </message>
    <message>
        <source>ssh says:
%1</source>
        <translation>ssh の出力:
%1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no file with certificates or a key: choose another</source>
        <translation>「%1」は証明書や鍵のファイルではありません。別のファイルを選んでください</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; is not there: put it right, or choose another</source>
        <translation>ファイル「%1」がありません。修正するか、別のファイルを選んでください</translation>
    </message>
    <message>
        <source>the file &apos;%1&apos; may not be read: put it right, or choose another</source>
        <translation>ファイル「%1」を読み取れません。修正するか、別のファイルを選んでください</translation>
    </message>
    <message>
        <source>ssh leads to one server: give one address and no sentinel, or go there without ssh</source>
        <translation>ssh で到達できるサーバーは 1 つだけです。アドレスを 1 つにしてセンチネルなしにするか、ssh を使わずに接続してください</translation>
    </message>
    <message>
        <source>the name of the robot&apos;s server among its sentinels is too long, or has control characters</source>
        <translation>センチネルでのロボットのサーバー名が長すぎるか、制御文字を含んでいます</translation>
    </message>
    <message>
        <source>replicas are those of a cluster, and sentinels lead to a server without one: choose one of them</source>
        <translation>レプリカはクラスターのもので、センチネルはクラスターなしのサーバーのものです。どちらか一方を選んでください</translation>
    </message>
    <message>
        <source>a replica of %1</source>
        <translation>%1 のレプリカ</translation>
    </message>
</context>
<context>
    <name>ConnectionStore</name>
    <message>
        <source>the robot&apos;s addresses are too long a text</source>
        <translation>ロボットのアドレスの文字列が長すぎます</translation>
    </message>
</context>
<context>
    <name>ConnectionText</name>
    <message>
        <source>Connected since %1</source>
        <translation>%1 から接続中</translation>
    </message>
    <message>
        <source>Refused, lost since %1</source>
        <translation>拒否されました (%1 から切断)</translation>
    </message>
    <message>
        <source>Disconnected since %1</source>
        <translation>%1 に切断</translation>
    </message>
    <message>
        <source>Connection lost since %1</source>
        <translation>%1 に接続が失われました</translation>
    </message>
    <message>
        <source>Interrupted since %1</source>
        <translation>%1 から中断</translation>
    </message>
    <message>
        <source>The connection is not tried again: that would not help, and might lock the account. &quot;Connect again&quot; asks for what was refused.</source>
        <translation>再接続は行われません。効果がなく、アカウントがロックされるおそれがあるためです。「もう一度接続」で、拒否されたものを入力できます。</translation>
    </message>
    <message>
        <source>The connection was closed on request. &quot;Reconnect&quot; opens it again.</source>
        <translation>接続は要求により閉じられました。「再接続」でもう一度開きます。</translation>
    </message>
    <message>
        <source>The connection is tried again and again, until it works.</source>
        <translation>接続できるまで繰り返し試みます。</translation>
    </message>
    <message>
        <source>Panels have stopped fetching: once connected, start it again in each, where it says how it fetches.</source>
        <translation>パネルは取得を停止しました。接続後、各パネルの取得方法の欄で再開してください。</translation>
    </message>
    <message>
        <source>Panels then go on by themselves.</source>
        <translation>その後パネルは自動的に再開します。</translation>
    </message>
    <message>
        <source>Not trying again: %1</source>
        <translation>再試行しません: %1</translation>
    </message>
    <message>
        <source>Trying again: %1</source>
        <translation>再試行中: %1</translation>
    </message>
    <message>
        <source>Refused: </source>
        <translation>拒否: </translation>
    </message>
    <message>
        <source>Disconnected: </source>
        <translation>切断: </translation>
    </message>
    <message>
        <source>Lost: </source>
        <translation>喪失: </translation>
    </message>
    <message>
        <source>Interrupted: </source>
        <translation>中断: </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Nothing new comes in: values are the last ones that came, and curves drawn since then are no new data.</source>
        <translation>新しいデータは届いていません。値は最後に届いたもので、それ以降に描かれた曲線は新しいデータではありません。</translation>
    </message>
    <message>
        <source>Panels that were open when the connection was lost have stopped fetching, and show what came before. Start it again in each, where it says how it fetches.</source>
        <translation>接続が失われたときに開いていたパネルは取得を停止し、それまでの値を表示しています。各パネルの取得方法の欄で再開してください。</translation>
    </message>
    <message numerus="yes">
        <source>Concerns %1 of %n panels; the others go on.</source>
        <translation>
            <numerusform>%n 個中 %1 個のパネルに影響があります。ほかは続行します。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>No panel opens %1.

Give a configuration that a panel has saved, or a workspace (*.tarvek).</source>
        <translation>%1 を開くパネルがありません。

パネルが保存した設定か、ワークスペース (*.tarvek) を指定してください。</translation>
    </message>
    <message>
        <source>There is no panel &quot;%1&quot;. Found: %2</source>
        <translation>パネル「%1」はありません。見つかったもの: %2</translation>
    </message>
    <message>
        <source>none</source>
        <translation>なし</translation>
    </message>
    <message numerus="yes">
        <source>

%n plug-in(s) could not be loaded: &quot;Help&quot;, &quot;Plug-ins that failed...&quot; says why.</source>
        <translation>
            <numerusform>

%n 個のプラグインを読み込めませんでした。理由は「ヘルプ」の「失敗したプラグイン...」にあります。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) are running. Quitting ends them; their files are kept.</source>
        <translation>
            <numerusform>%n 個の記録が実行中です。終了すると記録も終わりますが、ファイルは残ります。</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and quit</source>
        <translation>記録を終えて終了(&amp;E)</translation>
    </message>
</context>
<context>
    <name>DockTitle</name>
    <message>
        <source>Detach or attach the panel</source>
        <translation>パネルの切り離しと結合</translation>
    </message>
    <message>
        <source>Close the panel</source>
        <translation>パネルを閉じる</translation>
    </message>
    <message>
        <source>Title of the panel</source>
        <translation>パネルのタイトル</translation>
    </message>
    <message>
        <source>Drag to move the panel, double-click to rename it</source>
        <translation>ドラッグで移動、ダブルクリックで名前を変更</translation>
    </message>
</context>
<context>
    <name>EndingQuestion</name>
    <message>
        <source>Recordings are running</source>
        <translation>記録の実行中</translation>
    </message>
</context>
<context>
    <name>ErrorReporter</name>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>詳細にあと %n 件あります。</numerusform>
        </translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
</context>
<context>
    <name>FileField</name>
    <message>
        <source>PEM files (*.pem *.crt *.key)</source>
        <translation>PEM ファイル (*.pem *.crt *.key)</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>参照...</translation>
    </message>
</context>
<context>
    <name>FileMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;New connection...</source>
        <translation>新しい接続(&amp;N)...</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>R&amp;ecord...</source>
        <translation>記録(&amp;E)...</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>切断(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>再接続(&amp;R)</translation>
    </message>
    <message>
        <source>Wa&amp;it for the robot...</source>
        <translation>ロボットを待つ時間(&amp;I)...</translation>
    </message>
    <message>
        <source>&amp;Close panel</source>
        <translation>パネルを閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>Close &amp;window</source>
        <translation>ウィンドウを閉じる(&amp;W)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+W</source>
        <translation>Ctrl+Shift+W</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>終了(&amp;Q)</translation>
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
        <translation>検索</translation>
    </message>
    <message>
        <source>Find in the table</source>
        <translation>表の中を検索</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>前の一致</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>次の一致</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>このパネルには表がありません。</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>見つかりません</translation>
    </message>
    <message numerus="yes">
        <source>%n match(es), %1 % searched</source>
        <translation>
            <numerusform>%n 件一致、%1 % 検索済み</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n match(es)</source>
        <translation>
            <numerusform>%n 件一致</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Guide</name>
    <message>
        <source>The guide is not there: %1 is missing or cannot be read. Install the program&apos;s documents, too.</source>
        <translation>ガイドがありません。%1 が存在しないか読み取れません。プログラムの文書もインストールしてください。</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>ガイド</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>&amp;Help</source>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>ガイド(&amp;G)</translation>
    </message>
    <message>
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message>
        <source>&amp;Shortcuts...</source>
        <translation>ショートカット(&amp;S)...</translation>
    </message>
    <message>
        <source>&amp;Plug-ins that failed (%1)...</source>
        <translation>失敗したプラグイン(&amp;P) (%1)...</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostics</source>
        <translation>診断情報をコピー(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>このプログラムについて(&amp;A)</translation>
    </message>
    <message>
        <source>Copied: paste it into your report</source>
        <translation>コピーしました。報告に貼り付けてください</translation>
    </message>
    <message>
        <source>About</source>
        <translation>このプログラムについて</translation>
    </message>
    <message>
        <source>%1 %2

Shows tool panels for robots on the network.</source>
        <translation>%1 %2

ネットワーク上のロボットのためのツールパネルを表示します。</translation>
    </message>
</context>
<context>
    <name>KeptPasswords</name>
    <message>
        <source>The password is not kept: %1</source>
        <translation>パスワードは保存されません: %1</translation>
    </message>
</context>
<context>
    <name>LossLimitDialog</name>
    <message>
        <source>Wait for the robot</source>
        <translation>ロボットを待つ時間</translation>
    </message>
    <message>
        <source>Minutes that panels wait for a robot that is away before they give up (0: none):</source>
        <translation>応答のないロボットをパネルがあきらめずに待つ時間 (分、0: 待たない):</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>&amp;Edit</source>
        <translation>編集(&amp;E)</translation>
    </message>
    <message numerus="yes">
        <source>%1 (%n panel(s)). %2</source>
        <translation>
            <numerusform>%1 (パネル %n 個)。%2</numerusform>
        </translation>
    </message>
    <message>
        <source>The start-up dialog of another panel is still open.</source>
        <translation>別のパネルの開始ダイアログがまだ開いています。</translation>
    </message>
    <message>
        <source>The error does not describe itself.</source>
        <translation>エラーの内容がわかりません。</translation>
    </message>
    <message>
        <source>The panel &quot;%1&quot; cannot be opened.

%2</source>
        <translation>パネル「%1」を開けません。

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
        <translation>ロボットのサーバーまたはクラスター</translation>
    </message>
    <message>
        <source>a replica in its cluster</source>
        <translation>クラスター内のレプリカ</translation>
    </message>
    <message>
        <source>sentinels of</source>
        <translation>次のサーバーのセンチネル</translation>
    </message>
    <message>
        <source>What the address leads to</source>
        <translation>アドレスの接続先の種類</translation>
    </message>
    <message>
        <source>A replica takes work off the node that is written to; its values may be late. Sentinels know which of several servers is the robot&apos;s.</source>
        <translation>レプリカは書き込み先のノードの負荷を減らしますが、値が遅れることがあります。センチネルは、複数のサーバーのうちどれがロボットのものかを知っています。</translation>
    </message>
    <message>
        <source>Name of the server</source>
        <translation>サーバーの名前</translation>
    </message>
    <message>
        <source>the server&apos;s name</source>
        <translation>サーバーの名前</translation>
    </message>
    <message>
        <source>Sentinels watch several servers: say what they call the robot&apos;s, or choose what else the address leads to.</source>
        <translation>センチネルは複数のサーバーを監視します。ロボットのサーバーの、センチネルでの名前を入力するか、接続先の種類を選び直してください。</translation>
    </message>
</context>
<context>
    <name>OutageBar</name>
    <message>
        <source>&amp;Disconnect</source>
        <translation>切断(&amp;D)</translation>
    </message>
    <message>
        <source>Do not wait for the robot any longer</source>
        <translation>ロボットをこれ以上待たない</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>再接続(&amp;R)</translation>
    </message>
    <message>
        <source>Open the connection again, at once</source>
        <translation>すぐに接続をもう一度開く</translation>
    </message>
    <message>
        <source>Connect &amp;again...</source>
        <translation>もう一度接続(&amp;A)...</translation>
    </message>
    <message>
        <source>Give the user, password or certificates that the robot wants</source>
        <translation>ロボットが求めるユーザー、パスワード、証明書を指定する</translation>
    </message>
    <message>
        <source>&amp;Understood</source>
        <translation>了解(&amp;U)</translation>
    </message>
    <message>
        <source>Hide this</source>
        <translation>これを隠す</translation>
    </message>
</context>
<context>
    <name>PanelCommands</name>
    <message>
        <source>&amp;Save picture...</source>
        <translation>画像を保存(&amp;S)...</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Save &amp;table as CSV...</source>
        <translation>表を CSV で保存(&amp;T)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>&amp;Copy cell</source>
        <translation>セルをコピー(&amp;C)</translation>
    </message>
    <message>
        <source>Copy &amp;row</source>
        <translation>行をコピー(&amp;R)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Copy &amp;all</source>
        <translation>すべてコピー(&amp;A)</translation>
    </message>
    <message>
        <source>Copy &amp;picture</source>
        <translation>画像をコピー(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>検索(&amp;F)...</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>次を検索(&amp;N)</translation>
    </message>
    <message>
        <source>F3</source>
        <translation>F3</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>前を検索(&amp;V)</translation>
    </message>
    <message>
        <source>Shift+F3</source>
        <translation>Shift+F3</translation>
    </message>
    <message>
        <source>&amp;Next panel</source>
        <translation>次のパネル(&amp;N)</translation>
    </message>
    <message>
        <source>Ctrl+Tab</source>
        <translation>Ctrl+Tab</translation>
    </message>
    <message>
        <source>&amp;Previous panel</source>
        <translation>前のパネル(&amp;P)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Tab</source>
        <translation>Ctrl+Shift+Tab</translation>
    </message>
    <message>
        <source>&amp;Detach or attach</source>
        <translation>切り離しと結合(&amp;D)</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>名前を変更(&amp;R)...</translation>
    </message>
    <message>
        <source>There is no table in this panel.</source>
        <translation>このパネルには表がありません。</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 を保存しました</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>画像の保存</translation>
    </message>
    <message>
        <source>Picture (*.png)</source>
        <translation>画像 (*.png)</translation>
    </message>
    <message>
        <source>Document, sharp at any size (*.pdf)</source>
        <translation>どの大きさでも鮮明な文書 (*.pdf)</translation>
    </message>
    <message>
        <source>Save table</source>
        <translation>表の保存</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>カンマ区切りの値 (*.csv)</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>コピーしました</translation>
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
        <translation>開始ダイアログがまだ開いています。</translation>
    </message>
    <message>
        <source>Open the panel again when the robot is connected.</source>
        <translation>ロボットが接続されてから、もう一度パネルを開いてください。</translation>
    </message>
    <message>
        <source>The robot is not connected yet.</source>
        <translation>ロボットはまだ接続されていません。</translation>
    </message>
</context>
<context>
    <name>PanelMenu</name>
    <message>
        <source>&amp;Panels</source>
        <translation>パネル(&amp;P)</translation>
    </message>
    <message>
        <source>(none found)</source>
        <translation>(見つかりません)</translation>
    </message>
</context>
<context>
    <name>Picture</name>
    <message>
        <source>The picture cannot be saved as %1: let the name end in .png or .pdf.</source>
        <translation>画像を %1 として保存できません。名前の末尾を .png か .pdf にしてください。</translation>
    </message>
    <message>
        <source>There is nothing in the picture to save.</source>
        <translation>画像に保存する内容がありません。</translation>
    </message>
</context>
<context>
    <name>PluginFailuresDialog</name>
    <message>
        <source>Plug-ins that failed</source>
        <translation>失敗したプラグイン</translation>
    </message>
    <message>
        <source>Looked in: %1</source>
        <translation>検索した場所: %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>Every plug-in was loaded.</source>
        <translation>すべてのプラグインが読み込まれました。</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>理由</translation>
    </message>
</context>
<context>
    <name>PluginLoader</name>
    <message>
        <source>It is no plug-in: %1</source>
        <translation>プラグインではありません: %1</translation>
    </message>
    <message>
        <source>It offers the interface &quot;%1&quot;, but panels have &quot;%2&quot;. Get a version made for this program.</source>
        <translation>インターフェイスは「%1」ですが、パネルには「%2」が必要です。このプログラム用の版を入手してください。</translation>
    </message>
    <message>
        <source>It is loaded, but makes no plug-in object.</source>
        <translation>読み込まれましたが、プラグインのオブジェクトを作りません。</translation>
    </message>
    <message>
        <source>Its plug-in object (%1) has no panel interface.</source>
        <translation>プラグインのオブジェクト (%1) にパネルのインターフェイスがありません。</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>そのフォルダーはありません。</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>そのファイルはありません。</translation>
    </message>
    <message>
        <source>It failed in a way it does not describe.</source>
        <translation>原因のわからない失敗です。</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>It is no plug-in: the file is empty.</source>
        <translation>プラグインではありません: ファイルが空です。</translation>
    </message>
    <message>
        <source>It was built with Qt %1, and this program with Qt %2. Get a version made for this program.</source>
        <translation>Qt %1 でビルドされていますが、このプログラムは Qt %2 でビルドされています。このプログラム用の版を入手してください。</translation>
    </message>
</context>
<context>
    <name>Recording</name>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>%1 を起動できません: %2</translation>
    </message>
    <message>
        <source>The recording of %1 has ended, with warnings.</source>
        <translation>%1 の記録は警告付きで終わりました。</translation>
    </message>
    <message>
        <source>The recording of %1 has ended with an error (exit status %2).</source>
        <translation>%1 の記録はエラーで終わりました (終了ステータス %2)。</translation>
    </message>
    <message>
        <source>The recording of %1 did not end within %2 s, and was killed.</source>
        <translation>%1 の記録は %2 秒以内に終わらず、強制終了されました。</translation>
    </message>
    <message>
        <source>The recording of %1 was killed, or crashed.</source>
        <translation>%1 の記録は強制終了されたか、異常終了しました。</translation>
    </message>
    <message>
        <source>File: %1</source>
        <translation>ファイル: %1</translation>
    </message>
</context>
<context>
    <name>RecordingBar</name>
    <message>
        <source>Recordings</source>
        <translation>記録</translation>
    </message>
</context>
<context>
    <name>RecordingDialog</name>
    <message>
        <source>Configuration files (*.xml);;All files (*)</source>
        <translation>設定ファイル (*.xml);;すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv);;All files (*)</source>
        <translation>カンマ区切りの値 (*.csv);;すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Record %1</source>
        <translation>%1 の記録</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>記録(&amp;R)</translation>
    </message>
    <message>
        <source>What a &amp;configuration file watches:</source>
        <translation>設定ファイルで監視するもの(&amp;C):</translation>
    </message>
    <message>
        <source>Configuration file</source>
        <translation>設定ファイル</translation>
    </message>
    <message>
        <source>a file that a panel has saved</source>
        <translation>パネルが保存したファイル</translation>
    </message>
    <message>
        <source>These &amp;keys, one a line:</source>
        <translation>次のキー、1 行に 1 つ(&amp;K):</translation>
    </message>
    <message>
        <source>&amp;All keys that the robot has at the start</source>
        <translation>開始時にロボットにあるすべてのキー(&amp;A)</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>Only what c&amp;hanged: a row for each value</source>
        <translation>変化したものだけ: 値ごとに 1 行(&amp;H)</translation>
    </message>
    <message>
        <source>Call col&amp;umns by keys, not by aliases</source>
        <translation>列名に別名ではなくキーを使う(&amp;U)</translation>
    </message>
    <message>
        <source>So that a robot that plays the recording has these keys</source>
        <translation>記録を再生するロボットがこれらのキーを持つように</translation>
    </message>
    <message>
        <source>An empty row where the robot was &amp;lost</source>
        <translation>ロボットが失われた箇所に空行を入れる(&amp;L)</translation>
    </message>
    <message>
        <source>A row e&amp;very:</source>
        <translation>1 行の間隔(&amp;V):</translation>
    </message>
    <message>
        <source>File to record into</source>
        <translation>記録先のファイル</translation>
    </message>
    <message>
        <source>Another &amp;file every</source>
        <translation>次のファイルに替える間隔(&amp;F)</translation>
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
        <translation>分</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>時間</translation>
    </message>
    <message>
        <source>days</source>
        <translation>日</translation>
    </message>
    <message>
        <source>&amp;Into:</source>
        <translation>記録先(&amp;I):</translation>
    </message>
    <message>
        <source>Choose a configuration file, or say otherwise what to record.</source>
        <translation>設定ファイルを選ぶか、記録するものを別の方法で指定してください。</translation>
    </message>
    <message>
        <source>There is no file %1. Choose one that a panel has saved.</source>
        <translation>ファイル %1 がありません。パネルが保存したものを選んでください。</translation>
    </message>
    <message>
        <source>Enter the keys to record, one a line.</source>
        <translation>記録するキーを 1 行に 1 つずつ入力してください。</translation>
    </message>
    <message>
        <source>Choose the file to record into.</source>
        <translation>記録先のファイルを選んでください。</translation>
    </message>
    <message>
        <source>%1 is a folder. Add the name of the file to record into.</source>
        <translation>%1 はフォルダーです。記録先のファイル名を加えてください。</translation>
    </message>
    <message>
        <source>The file is there already</source>
        <translation>ファイルがすでにあります</translation>
    </message>
    <message>
        <source>%1 is there already. Go on behind its last row? It is never replaced; if it is no recording of the same columns, it is left as it is, and nothing is recorded.</source>
        <translation>%1 はすでにあります。最後の行に続けて記録しますか。ファイルが置き換えられることはありません。同じ列の記録でなければ、そのまま残し、何も記録しません。</translation>
    </message>
    <message>
        <source>&amp;Go on behind it</source>
        <translation>続けて記録(&amp;G)</translation>
    </message>
</context>
<context>
    <name>RecordingPlan</name>
    <message>
        <source>The program zo-record, which records, is missing. Install the package zo-record, or put the program beside tarvek-desktop, or into a folder of PATH.</source>
        <translation>記録を行うプログラム zo-record がありません。パッケージ zo-record をインストールするか、プログラムを tarvek-desktop と同じ場所か PATH のフォルダーに置いてください。</translation>
    </message>
</context>
<context>
    <name>RecordingRow</name>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>End this recording; its file is kept</source>
        <translation>この記録を終える。ファイルは残ります</translation>
    </message>
    <message>
        <source>is being ended</source>
        <translation>終了処理中</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1, from %2</source>
        <translation>%1 (%2 から)</translation>
    </message>
    <message>
        <source>Stop recording %1</source>
        <translation>%1 の記録を停止</translation>
    </message>
</context>
<context>
    <name>RecordingState</name>
    <message>
        <source>starting</source>
        <translation>開始中</translation>
    </message>
    <message>
        <source>waits for the robot</source>
        <translation>ロボットを待っています</translation>
    </message>
    <message numerus="yes">
        <source>%1 rows</source>
        <translation>
            <numerusform>%1 行</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 polls missed</source>
        <translation>
            <numerusform>取得漏れ %1 回</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 values too large</source>
        <translation>
            <numerusform>大きすぎる値 %1 個</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>空き %1</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>keys without a value: %1</source>
        <translation>値のないキー: %1</translation>
    </message>
</context>
<context>
    <name>Recordings</name>
    <message>
        <source>The password of this robot has a line break, which the recorder cannot be given. Give the robot&apos;s user another password, or connect as another user.</source>
        <translation>このロボットのパスワードには改行があり、記録プログラムに渡せません。ロボットのユーザーに別のパスワードを設定するか、別のユーザーで接続してください。</translation>
    </message>
    <message numerus="yes">
        <source>%n recordings are running in this window: end one of them first.</source>
        <translation>
            <numerusform>このウィンドウでは %n 個の記録が実行中です。先に 1 つ終えてください。</numerusform>
        </translation>
    </message>
    <message>
        <source>Recorded %1: %2</source>
        <translation>%1 を記録しました: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n recording(s) of this window are running. Closing it ends them; their files are kept.</source>
        <translation>
            <numerusform>このウィンドウでは %n 個の記録が実行中です。閉じると記録は終わりますが、ファイルは残ります。</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;End recordings and close</source>
        <translation>記録を終えて閉じる(&amp;E)</translation>
    </message>
</context>
<context>
    <name>RobotList</name>
    <message>
        <source>Robots that you have saved. A double click renames one.</source>
        <translation>保存したロボット。ダブルクリックで名前を変更できます。</translation>
    </message>
    <message>
        <source>Sa&amp;ved robots:</source>
        <translation>保存したロボット(&amp;V):</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上へ</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>下へ</translation>
    </message>
    <message>
        <source>Delete...</source>
        <translation>削除...</translation>
    </message>
    <message>
        <source>Delete a robot</source>
        <translation>ロボットの削除</translation>
    </message>
    <message>
        <source>Delete the saved robot &quot;%1&quot;?</source>
        <translation>保存したロボット「%1」を削除しますか。</translation>
    </message>
</context>
<context>
    <name>RobotOpening</name>
    <message>
        <source>The way there is not encrypted: whoever listens on it can read the password.</source>
        <translation>経路は暗号化されていません。傍受されるとパスワードが読み取られます。</translation>
    </message>
    <message>
        <source>The way from %1 on is not encrypted: whoever listens on it can read the password.</source>
        <translation>%1 から先の経路は暗号化されていません。傍受されるとパスワードが読み取られます。</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>Password for the robot %1:</source>
        <translation>ロボット %1 のパスワード:</translation>
    </message>
    <message>
        <source>Password of &quot;%1&quot; for the robot %2:</source>
        <translation>ロボット %2 のユーザー「%1」のパスワード:</translation>
    </message>
</context>
<context>
    <name>SavedFile</name>
    <message>
        <source>%1 cannot be saved: %2</source>
        <translation>%1 を保存できません: %2</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Shortcuts</source>
        <translation>ショートカット</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>キー</translation>
    </message>
    <message>
        <source>What they do</source>
        <translation>動作</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Return</translation>
    </message>
    <message>
        <source>Next match, in the bar to find with</source>
        <translation>検索バーで次の一致</translation>
    </message>
    <message>
        <source>Shift+Return</source>
        <translation>Shift+Return</translation>
    </message>
    <message>
        <source>Previous match, there</source>
        <translation>検索バーで前の一致</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Close the bar, or give a title its old text</source>
        <translation>バーを閉じる、またはタイトルを元の文字に戻す</translation>
    </message>
</context>
<context>
    <name>SshQuestion</name>
    <message>
        <source>ssh asks</source>
        <translation>ssh からの質問</translation>
    </message>
</context>
<context>
    <name>SshRelay</name>
    <message>
        <source>&apos;%1&apos; is no host for ssh: write USER@HOST, as in pilot@gate-3, or a name that ssh&apos;s configuration knows</source>
        <translation>「%1」は ssh のホストではありません。pilot@gate-3 のように USER@HOST と書くか、ssh の設定にある名前を入力してください</translation>
    </message>
    <message>
        <source>the folder for temporary files has too long a name: %1</source>
        <translation>一時ファイルのフォルダーの名前が長すぎます: %1</translation>
    </message>
</context>
<context>
    <name>StartPage</name>
    <message>
        <source>Choose a panel:</source>
        <translation>パネルを選んでください:</translation>
    </message>
    <message>
        <source>

Some files could not be used: see &quot;Help&quot;, &quot;Plug-ins that failed&quot;.</source>
        <translation>

使用できないファイルがありました。「ヘルプ」の「失敗したプラグイン」を参照してください。</translation>
    </message>
    <message>
        <source>No panel was found. Panels were looked for in:
%1

Start the program with --plugin-dir DIR or --plugin FILE to say where they are.</source>
        <translation>パネルが見つかりません。次の場所を検索しました:
%1

--plugin-dir DIR か --plugin FILE を付けてプログラムを起動し、場所を指定してください。</translation>
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
        <translation>%1 ms 前</translation>
    </message>
    <message>
        <source>%1 s ago</source>
        <translation>%1 秒前</translation>
    </message>
    <message>
        <source>%1 min ago</source>
        <translation>%1 分前</translation>
    </message>
    <message>
        <source>%1 h ago</source>
        <translation>%1 時間前</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/秒</translation>
    </message>
    <message>
        <source>changes only</source>
        <translation>変化のみ</translation>
    </message>
    <message>
        <source>everything</source>
        <translation>すべて</translation>
    </message>
    <message>
        <source>the robot tells what was written, and only that is read</source>
        <translation>書き込まれたものをロボットが知らせ、それだけを読み取ります</translation>
    </message>
    <message>
        <source>every value is read each time</source>
        <translation>毎回すべての値を読み取ります</translation>
    </message>
    <message>
        <source>no values are followed</source>
        <translation>追跡中の値はありません</translation>
    </message>
    <message>
        <source>%1 answers/s</source>
        <translation>%1 応答/秒</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>まだなし</translation>
    </message>
    <message>
        <source>Round trip: %1</source>
        <translation>往復時間: %1</translation>
    </message>
    <message>
        <source>Newest answer: %1</source>
        <translation>最新の応答: %1</translation>
    </message>
    <message>
        <source>Answers: %1/s</source>
        <translation>応答: %1/秒</translation>
    </message>
    <message>
        <source>Received: %1</source>
        <translation>受信: %1</translation>
    </message>
    <message>
        <source>Sent: %1</source>
        <translation>送信: %1</translation>
    </message>
    <message>
        <source>Following: %1</source>
        <translation>追跡: %1</translation>
    </message>
</context>
<context>
    <name>WorkspaceFile</name>
    <message>
        <source>it is no file</source>
        <translation>ファイルではありません</translation>
    </message>
    <message>
        <source>it is larger than %1 MiB</source>
        <translation>%1 MiB を超えています</translation>
    </message>
    <message>
        <source>The workspace %1 cannot be opened: %2.

Choose a file that &quot;Save workspace&quot; wrote.</source>
        <translation>ワークスペース %1 を開けません: %2。

「ワークスペースを保存」で書き込まれたファイルを選んでください。</translation>
    </message>
    <message>
        <source>it would be larger than %1 MiB</source>
        <translation>%1 MiB を超えてしまいます</translation>
    </message>
    <message>
        <source>%1 cannot be saved: %2.</source>
        <translation>%1 を保存できません: %2。</translation>
    </message>
</context>
<context>
    <name>WorkspaceMenu</name>
    <message>
        <source>&amp;Open workspace...</source>
        <translation>ワークスペースを開く(&amp;O)...</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Recent wor&amp;kspaces</source>
        <translation>最近のワークスペース(&amp;K)</translation>
    </message>
    <message>
        <source>Sa&amp;ve workspace...</source>
        <translation>ワークスペースを保存(&amp;V)...</translation>
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
        <translation>ロボット %1: %2</translation>
    </message>
    <message>
        <source>Not all of the workspace could be opened:

%1</source>
        <translation>ワークスペースの一部を開けませんでした:

%1</translation>
    </message>
    <message numerus="yes">
        <source>%n more in the details.</source>
        <translation>
            <numerusform>詳細にあと %n 件あります。</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Connecting to
%1</source>
        <translation>接続しています
%1</translation>
    </message>
    <message>
        <source>%1: not tried to the end</source>
        <translation>%1: 最後まで試されませんでした</translation>
    </message>
    <message>
        <source>Panel &quot;%1&quot; of %2: there is no such plug-in here. &quot;Help&quot;, &quot;Plug-ins that failed...&quot; may say why.</source>
        <translation>%2 のパネル「%1」: そのプラグインはここにありません。理由は「ヘルプ」の「失敗したプラグイン...」にあるかもしれません。</translation>
    </message>
    <message>
        <source>Try &amp;again</source>
        <translation>再試行(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Leave out panels without a plug-in when the workspace is saved again</source>
        <translation>次にワークスペースを保存するとき、プラグインのないパネルを除く(&amp;L)</translation>
    </message>
</context>
<context>
    <name>WorkspaceText</name>
    <message>
        <source>&quot;%1&quot; is no text, or too long</source>
        <translation>「%1」は文字列でないか、長すぎます</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has characters that no text of one line has</source>
        <translation>「%1」に 1 行の文字列では使えない文字があります</translation>
    </message>
    <message>
        <source>no plug-in is named</source>
        <translation>プラグインの指定がありません</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>more than %1 panels</source>
        <translation>パネルが %1 個を超えています</translation>
    </message>
    <message>
        <source>%1, panel %2</source>
        <translation>%1、パネル %2</translation>
    </message>
    <message>
        <source>the window of %1</source>
        <translation>%1 のウィンドウ</translation>
    </message>
    <message>
        <source>it has more than %1 windows</source>
        <translation>ウィンドウが %1 個を超えています</translation>
    </message>
    <message>
        <source>it is no JSON: %1, at byte %2</source>
        <translation>JSON ではありません: %1 (%2 バイト目)</translation>
    </message>
    <message>
        <source>it is no workspace of this program</source>
        <translation>このプログラムのワークスペースではありません</translation>
    </message>
    <message>
        <source>Window %1</source>
        <translation>ウィンドウ %1</translation>
    </message>
    <message>
        <source>a newer version wrote it, and this one does not understand it: choose another file</source>
        <translation>新しい版で書かれており、この版では理解できません。別のファイルを選んでください</translation>
    </message>
</context>
<context>
    <name>Workspaces</name>
    <message>
        <source>Workspaces (*.tarvek)</source>
        <translation>ワークスペース (*.tarvek)</translation>
    </message>
    <message>
        <source>Open workspace</source>
        <translation>ワークスペースを開く</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Save workspace</source>
        <translation>ワークスペースを保存</translation>
    </message>
    <message>
        <source>The workspace is saved in %1</source>
        <translation>ワークスペースを %1 に保存しました</translation>
    </message>
    <message>
        <source>A workspace is being opened already</source>
        <translation>すでにワークスペースを開いている途中です</translation>
    </message>
</context>
</TS>
