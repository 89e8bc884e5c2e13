<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>KestraProjectHelper</name>
    <message>
        <source>Found NULL TrelColorLibrary node</source>
        <translation>Leerer TrelColorLibrary-Knoten (NULL) gefunden</translation>
    </message>
    <message>
        <source>Found NULL TrelColorLibrary element</source>
        <translation>Leeres TrelColorLibrary-Element (NULL) gefunden</translation>
    </message>
    <message>
        <source>Expected TrelColorLibrary element</source>
        <translation>TrelColorLibrary-Element erwartet</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Linear (Default)</source>
        <translation>Linear (Standard)</translation>
    </message>
    <message>
        <source>Normal (Trel Gamma)</source>
        <translation>Normal (Trel-Gamma)</translation>
    </message>
    <message>
        <source>Tungsten/Incandescent</source>
        <translation>Halogen/Glühlampe</translation>
    </message>
    <message>
        <source>Generic RGB</source>
        <translation>Generisches RGB</translation>
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
        <translation>Generisches RGBW</translation>
    </message>
    <message>
        <source>Single Channel</source>
        <translation>Einzelkanal</translation>
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
        <translation>RGB-Eingang/-Ausgang</translation>
    </message>
    <message>
        <source>RGBA In/Out</source>
        <translation>RGBA-Eingang/-Ausgang</translation>
    </message>
    <message>
        <source>RGBW In/Out</source>
        <translation>RGBW-Eingang/-Ausgang</translation>
    </message>
    <message>
        <source>RGBAW In/Out</source>
        <translation>RGBAW-Eingang/-Ausgang</translation>
    </message>
    <message>
        <source>RGBWW In/Out</source>
        <translation>RGBWW-Eingang/-Ausgang</translation>
    </message>
    <message>
        <source>RGB In / RGBA Out</source>
        <translation>RGB-Eingang / RGBA-Ausgang</translation>
    </message>
    <message>
        <source>RGB In / RGBW Out</source>
        <translation>RGB-Eingang / RGBW-Ausgang</translation>
    </message>
    <message>
        <source>RGB In / RGBAW Out</source>
        <translation>RGB-Eingang / RGBAW-Ausgang</translation>
    </message>
    <message>
        <source>RGB In / RGBWW Out</source>
        <translation>RGB-Eingang / RGBWW-Ausgang</translation>
    </message>
    <message>
        <source>Single Channel In/Out</source>
        <translation>Einzelkanal-Eingang/-Ausgang</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>Amber</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Mint</source>
        <translation>Mint</translation>
    </message>
</context>
<context>
    <name>TrelColorLibrary</name>
    <message>
        <source>Swatches</source>
        <translation>Farbfelder</translation>
    </message>
    <message>
        <source>Color ID</source>
        <translation>Farb-ID</translation>
    </message>
</context>
</TS>
