<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>ConfigDialog</name>
    <message>
        <source>Open File</source>
        <translation>ファイルを開く</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>XML ファイル (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>設定ファイルの保存</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
</context>
<context>
    <name>ConfigManager</name>
    <message>
        <source>Failed to open location %1 for writing.
%2
Configuration file will not be saved.</source>
        <translation>%1 を書き込み用に開けませんでした。
%2
設定ファイルは保存されません。</translation>
    </message>
    <message>
        <source>Failed to compute XML configuration to be written at location %1.</source>
        <translation>%1 に書き込む XML 設定を作成できませんでした。</translation>
    </message>
    <message>
        <source>Failed to open location %1 for reading.
Configuration file will not be loaded.</source>
        <translation>%1 を読み取り用に開けませんでした。
設定ファイルは読み込まれません。</translation>
    </message>
    <message>
        <source>Could not parse XML from location %1.
%2
Configuration file will not be loaded.</source>
        <translation>%1 の XML を解析できませんでした。
%2
設定ファイルは読み込まれません。</translation>
    </message>
    <message>
        <source>Incorrect Tarvek Glimmet configuration file at location %1.
.</source>
        <translation>%1 は Tarvek Glimmet の正しい設定ファイルではありません。
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
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>View devices</source>
        <translation>デバイスを表示</translation>
    </message>
    <message>
        <source>Filter: </source>
        <translation>フィルター: </translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>Time interval</source>
        <translation>時間間隔</translation>
    </message>
    <message>
        <source>Get data every (ms):</source>
        <translation>データの取得間隔 (ms):</translation>
    </message>
    <message>
        <source>Merge with File</source>
        <translation>ファイルと統合</translation>
    </message>
    <message>
        <source>Xml file (*.xml)</source>
        <translation>XML ファイル (*.xml)</translation>
    </message>
    <message>
        <source>Save configuration file</source>
        <translation>設定ファイルの保存</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
</context>
</TS>
