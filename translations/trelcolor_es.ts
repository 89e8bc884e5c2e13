<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>KestraProjectHelper</name>
    <message>
        <source>Found NULL TrelColorLibrary node</source>
        <translation>Se encontró un nodo TrelColorLibrary nulo (NULL)</translation>
    </message>
    <message>
        <source>Found NULL TrelColorLibrary element</source>
        <translation>Se encontró un elemento TrelColorLibrary nulo (NULL)</translation>
    </message>
    <message>
        <source>Expected TrelColorLibrary element</source>
        <translation>Se esperaba un elemento TrelColorLibrary</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Linear (Default)</source>
        <translation>Lineal (predeterminada)</translation>
    </message>
    <message>
        <source>Normal (Trel Gamma)</source>
        <translation>Normal (gamma Trel)</translation>
    </message>
    <message>
        <source>Tungsten/Incandescent</source>
        <translation>Tungsteno/incandescente</translation>
    </message>
    <message>
        <source>Generic RGB</source>
        <translation>RGB genérico</translation>
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
        <translation>RGBW genérico</translation>
    </message>
    <message>
        <source>Single Channel</source>
        <translation>Monocanal</translation>
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
        <translation>Entrada/salida RGB</translation>
    </message>
    <message>
        <source>RGBA In/Out</source>
        <translation>Entrada/salida RGBA</translation>
    </message>
    <message>
        <source>RGBW In/Out</source>
        <translation>Entrada/salida RGBW</translation>
    </message>
    <message>
        <source>RGBAW In/Out</source>
        <translation>Entrada/salida RGBAW</translation>
    </message>
    <message>
        <source>RGBWW In/Out</source>
        <translation>Entrada/salida RGBWW</translation>
    </message>
    <message>
        <source>RGB In / RGBA Out</source>
        <translation>Entrada RGB / salida RGBA</translation>
    </message>
    <message>
        <source>RGB In / RGBW Out</source>
        <translation>Entrada RGB / salida RGBW</translation>
    </message>
    <message>
        <source>RGB In / RGBAW Out</source>
        <translation>Entrada RGB / salida RGBAW</translation>
    </message>
    <message>
        <source>RGB In / RGBWW Out</source>
        <translation>Entrada RGB / salida RGBWW</translation>
    </message>
    <message>
        <source>Single Channel In/Out</source>
        <translation>Entrada/salida monocanal</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rojo</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Verde</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Azul</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>Ámbar</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanco</translation>
    </message>
    <message>
        <source>Mint</source>
        <translation>Menta</translation>
    </message>
</context>
<context>
    <name>TrelColorLibrary</name>
    <message>
        <source>Swatches</source>
        <translation>Muestras</translation>
    </message>
    <message>
        <source>Color ID</source>
        <translation>ID de color</translation>
    </message>
</context>
</TS>
