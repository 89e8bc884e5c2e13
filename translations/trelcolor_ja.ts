<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>KestraProjectHelper</name>
    <message>
        <source>Found NULL TrelColorLibrary node</source>
        <translation>NULLのTrelColorLibraryノードが見つかりました</translation>
    </message>
    <message>
        <source>Found NULL TrelColorLibrary element</source>
        <translation>NULLのTrelColorLibrary要素が見つかりました</translation>
    </message>
    <message>
        <source>Expected TrelColorLibrary element</source>
        <translation>TrelColorLibrary要素が必要です</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Linear (Default)</source>
        <translation>リニア（デフォルト）</translation>
    </message>
    <message>
        <source>Normal (Trel Gamma)</source>
        <translation>ノーマル（Trelガンマ）</translation>
    </message>
    <message>
        <source>Tungsten/Incandescent</source>
        <translation>タングステン/白熱電球</translation>
    </message>
    <message>
        <source>Generic RGB</source>
        <translation>汎用RGB</translation>
    </message>
    <message>
        <source>Strand/Beam KVX</source>
        <translation>Strand/Beam KVX</translation>
    </message>
    <message>
        <source>Tessel CoveLine</source>
        <translation>Tessel CoveLine</translation>
    </message>
    <message>
        <source>Generic RGBW</source>
        <translation>汎用RGBW</translation>
    </message>
    <message>
        <source>Single Channel</source>
        <translation>シングルチャンネル</translation>
    </message>
    <message>
        <source>WashLine PZ6 RGBA</source>
        <translation>WashLine PZ6 RGBA</translation>
    </message>
    <message>
        <source>WashLine PZ6 RGBW</source>
        <translation>WashLine PZ6 RGBW</translation>
    </message>
    <message>
        <source>FloodBar KQ2 RGBA</source>
        <translation>FloodBar KQ2 RGBA</translation>
    </message>
    <message>
        <source>FloodBar KQ2 RGBW</source>
        <translation>FloodBar KQ2 RGBW</translation>
    </message>
    <message>
        <source>PixelNode RGB</source>
        <translation>PixelNode RGB</translation>
    </message>
    <message>
        <source>RGB In/Out</source>
        <translation>RGB入出力</translation>
    </message>
    <message>
        <source>RGBA In/Out</source>
        <translation>RGBA入出力</translation>
    </message>
    <message>
        <source>RGBW In/Out</source>
        <translation>RGBW入出力</translation>
    </message>
    <message>
        <source>RGBAW In/Out</source>
        <translation>RGBAW入出力</translation>
    </message>
    <message>
        <source>RGBWW In/Out</source>
        <translation>RGBWW入出力</translation>
    </message>
    <message>
        <source>RGB In / RGBA Out</source>
        <translation>RGB入力 / RGBA出力</translation>
    </message>
    <message>
        <source>RGB In / RGBW Out</source>
        <translation>RGB入力 / RGBW出力</translation>
    </message>
    <message>
        <source>RGB In / RGBAW Out</source>
        <translation>RGB入力 / RGBAW出力</translation>
    </message>
    <message>
        <source>RGB In / RGBWW Out</source>
        <translation>RGB入力 / RGBWW出力</translation>
    </message>
    <message>
        <source>Single Channel In/Out</source>
        <translation>シングルチャンネル入出力</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>レッド</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>グリーン</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>ブルー</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>アンバー</translation>
    </message>
    <message>
        <source>White</source>
        <translation>ホワイト</translation>
    </message>
    <message>
        <source>Mint</source>
        <translation>ミント</translation>
    </message>
</context>
<context>
    <name>TrelColorLibrary</name>
    <message>
        <source>Swatches</source>
        <translation>スウォッチ</translation>
    </message>
    <message>
        <source>Color ID</source>
        <translation>カラーID</translation>
    </message>
</context>
</TS>
