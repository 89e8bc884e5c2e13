<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>KestraProjectHelper</name>
    <message>
        <source>Found NULL TrelColorLibrary node</source>
        <translation>Nœud TrelColorLibrary nul (NULL) détecté</translation>
    </message>
    <message>
        <source>Found NULL TrelColorLibrary element</source>
        <translation>Élément TrelColorLibrary nul (NULL) détecté</translation>
    </message>
    <message>
        <source>Expected TrelColorLibrary element</source>
        <translation>Élément TrelColorLibrary attendu</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Linear (Default)</source>
        <translation>Linéaire (par défaut)</translation>
    </message>
    <message>
        <source>Normal (Trel Gamma)</source>
        <translation>Normale (gamma Trel)</translation>
    </message>
    <message>
        <source>Tungsten/Incandescent</source>
        <translation>Tungstène/incandescence</translation>
    </message>
    <message>
        <source>Generic RGB</source>
        <translation>RGB générique</translation>
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
        <translation>RGBW générique</translation>
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
        <translation>Entrée/sortie RGB</translation>
    </message>
    <message>
        <source>RGBA In/Out</source>
        <translation>Entrée/sortie RGBA</translation>
    </message>
    <message>
        <source>RGBW In/Out</source>
        <translation>Entrée/sortie RGBW</translation>
    </message>
    <message>
        <source>RGBAW In/Out</source>
        <translation>Entrée/sortie RGBAW</translation>
    </message>
    <message>
        <source>RGBWW In/Out</source>
        <translation>Entrée/sortie RGBWW</translation>
    </message>
    <message>
        <source>RGB In / RGBA Out</source>
        <translation>Entrée RGB / sortie RGBA</translation>
    </message>
    <message>
        <source>RGB In / RGBW Out</source>
        <translation>Entrée RGB / sortie RGBW</translation>
    </message>
    <message>
        <source>RGB In / RGBAW Out</source>
        <translation>Entrée RGB / sortie RGBAW</translation>
    </message>
    <message>
        <source>RGB In / RGBWW Out</source>
        <translation>Entrée RGB / sortie RGBWW</translation>
    </message>
    <message>
        <source>Single Channel In/Out</source>
        <translation>Entrée/sortie monocanal</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rouge</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Vert</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>Ambre</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanc</translation>
    </message>
    <message>
        <source>Mint</source>
        <translation>Menthe</translation>
    </message>
</context>
<context>
    <name>TrelColorLibrary</name>
    <message>
        <source>Swatches</source>
        <translation>Nuancier</translation>
    </message>
    <message>
        <source>Color ID</source>
        <translation>ID de couleur</translation>
    </message>
</context>
</TS>
