<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AddFixturesDialog</name>
    <message>
        <source>Fixture</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Add Fixtures</source>
        <translation>Geräte hinzufügen</translation>
    </message>
    <message>
        <source>%1 bit</source>
        <translation>%1 Bit</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Profile:</source>
        <translation>&amp;Profil:</translation>
    </message>
    <message>
        <source>&amp;Mode:</source>
        <translation>&amp;Modus:</translation>
    </message>
    <message>
        <source>&amp;Resolution:</source>
        <translation>&amp;Auflösung:</translation>
    </message>
    <message>
        <source>Num&amp;ber:</source>
        <translation>An&amp;zahl:</translation>
    </message>
    <message>
        <source>&amp;Universe:</source>
        <translation>&amp;Universum:</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>A&amp;dresse:</translation>
    </message>
    <message>
        <source>Slots %1 to %2 of universe %3</source>
        <translation>Kanäle %1 bis %2 in Universum %3</translation>
    </message>
    <message>
        <source>These need slots up to %1; a universe has %2.</source>
        <translation>Diese brauchen Kanäle bis %1; ein Universum hat %2.</translation>
    </message>
    <message>
        <source>They overlap others of the universe.</source>
        <translation>Sie überschneiden sich mit anderen des Universums.</translation>
    </message>
</context>
<context>
    <name>CctStrip</name>
    <message>
        <source>Colour temperature</source>
        <translation>Farbtemperatur</translation>
    </message>
    <message>
        <source>%1 K</source>
        <translation>%1 K</translation>
    </message>
</context>
<context>
    <name>ChromaticityChart</name>
    <message>
        <source>x %1  y %2</source>
        <translation>x %1  y %2</translation>
    </message>
    <message>
        <source>Chromaticity chart</source>
        <translation>Farbtafel</translation>
    </message>
    <message>
        <source>gives %1</source>
        <translation>gibt %1</translation>
    </message>
    <message>
        <source>black</source>
        <translation>Schwarz</translation>
    </message>
    <message>
        <source>%1; %2 gives %3</source>
        <translation>%1; %2 gibt %3</translation>
    </message>
</context>
<context>
    <name>ColorEditor</name>
    <message>
        <source>x %1, y %2</source>
        <translation>x %1, y %2</translation>
    </message>
    <message>
        <source>Colour as text</source>
        <translation>Farbe als Text</translation>
    </message>
    <message>
        <source>A name, “#” and hexadecimal digits, or a value string such as “aYxy;1;0;65535;1;0.3127;0.329”</source>
        <translation>Ein Name, „#“ und Hexadezimalziffern oder eine Wertzeichenkette wie „aYxy;1;0;65535;1;0.3127;0.329“</translation>
    </message>
    <message>
        <source>Ways to edit the colour</source>
        <translation>Wege, die Farbe zu bearbeiten</translation>
    </message>
    <message>
        <source>The measurements of this profile are incomplete.</source>
        <translation>Die Messwerte dieses Profils sind unvollständig.</translation>
    </message>
    <message>
        <source>The colour is not white light. The values are those last used.</source>
        <translation>Die Farbe ist kein weißes Licht. Die Werte sind die zuletzt benutzten.</translation>
    </message>
    <message>
        <source>%1 cannot give this colour. It gives %2, at the right.</source>
        <translation>%1 kann diese Farbe nicht. Es gibt %2, rechts.</translation>
    </message>
    <message>
        <source>%1 can give this colour.</source>
        <translation>%1 kann diese Farbe.</translation>
    </message>
    <message>
        <source>There is no colour in it.</source>
        <translation>Darin ist keine Farbe.</translation>
    </message>
</context>
<context>
    <name>ColorForm</name>
    <message>
        <source> %</source>
        <translation> %</translation>
    </message>
    <message>
        <source>From 0 to 255</source>
        <translation>Von 0 bis 255</translation>
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
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>°</source>
        <translation>°</translation>
    </message>
    <message>
        <source>Degrees around the colour circle from red</source>
        <translation>Grad auf dem Farbkreis, von Rot an</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>From grey to full colour</source>
        <translation>Von Grau bis zur vollen Farbe</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Hellwert</translation>
    </message>
    <message>
        <source>From black to bright</source>
        <translation>Von Schwarz bis hell</translation>
    </message>
    <message>
        <source>Luminance Y</source>
        <translation>Leuchtdichte Y</translation>
    </message>
    <message>
        <source>Of what is possible at this chromaticity</source>
        <translation>Anteil des bei dieser Farbart Möglichen</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>Chromaticity, CIE 1931</source>
        <translation>Farbart nach CIE 1931</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source> K</source>
        <translation> K</translation>
    </message>
    <message>
        <source>Correlated colour temperature</source>
        <translation>Ähnlichste Farbtemperatur</translation>
    </message>
    <message>
        <source>Tint</source>
        <translation>Stich</translation>
    </message>
    <message>
        <source>Above 0 greenish, below pinkish</source>
        <translation>Über 0 grünlich, darunter rosa</translation>
    </message>
    <message>
        <source>Luminance</source>
        <translation>Leuchtdichte</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Kanal %1</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stellwert</translation>
    </message>
    <message>
        <source>RGB</source>
        <translation>RGB</translation>
    </message>
    <message>
        <source>HSV</source>
        <translation>HSV</translation>
    </message>
    <message>
        <source>Yxy</source>
        <translation>Yxy</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Levels</source>
        <translation>Kanäle</translation>
    </message>
</context>
<context>
    <name>ColorPreview</name>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Drag it onto a list or a fixture</source>
        <translation>Auf eine Liste oder ein Gerät ziehen</translation>
    </message>
    <message>
        <source>%1, given as %2</source>
        <translation>%1, gegeben als %2</translation>
    </message>
</context>
<context>
    <name>ColorText</name>
    <message>
        <source>Nothing was entered.</source>
        <translation>Es wurde nichts eingegeben.</translation>
    </message>
    <message>
        <source>After “#” stand 6, 8, 12 or 16 hexadecimal digits.</source>
        <translation>Hinter „#“ stehen 6, 8, 12 oder 16 Hexadezimalziffern.</translation>
    </message>
    <message>
        <source>This is no complete value string.</source>
        <translation>Das ist keine vollständige Wertzeichenkette.</translation>
    </message>
    <message>
        <source>No colour is called “%1”.</source>
        <translation>Keine Farbe heißt „%1“.</translation>
    </message>
    <message>
        <source>This is no colour.</source>
        <translation>Das ist keine Farbe.</translation>
    </message>
    <message>
        <source>Y, x and y lie between 0 and 1.</source>
        <translation>Y, x und y liegen zwischen 0 und 1.</translation>
    </message>
    <message>
        <source>There is no fixture profile %1.</source>
        <translation>Es gibt kein Geräteprofil %1.</translation>
    </message>
    <message>
        <source>%1 has other channels.</source>
        <translation>%1 hat andere Kanäle.</translation>
    </message>
</context>
<context>
    <name>Crossfader</name>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Nach</translation>
    </message>
    <message>
        <source>&amp;Time</source>
        <translation>&amp;Zeit</translation>
    </message>
    <message>
        <source>Crossfade</source>
        <translation>Überblendung</translation>
    </message>
    <message>
        <source>Crossfade position</source>
        <translation>Stand der Überblendung</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Start Fade</source>
        <translation>Überblenden</translation>
    </message>
</context>
<context>
    <name>DmxOutput</name>
    <message>
        <source>This build has no DMX output</source>
        <translation>Dieses Programm ist ohne DMX-Ausgabe gebaut</translation>
    </message>
    <message>
        <source>DMX output is off</source>
        <translation>DMX-Ausgabe ist aus</translation>
    </message>
    <message>
        <source>The OLA daemon does not answer, trying again</source>
        <translation>Der OLA-Dienst antwortet nicht, neuer Versuch folgt</translation>
    </message>
    <message>
        <source>DMX output: nothing is patched</source>
        <translation>DMX-Ausgabe: keine Geräte</translation>
    </message>
    <message>
        <source>Universes without an output port in OLA: %1</source>
        <translation>Universen ohne Ausgang in OLA: %1</translation>
    </message>
    <message>
        <source>Blackout</source>
        <translation>Alles dunkel</translation>
    </message>
    <message>
        <source>Sending universe %1</source>
        <translation>Sendet Universum %1</translation>
    </message>
    <message>
        <source>Sending universes %1</source>
        <translation>Sendet Universen %1</translation>
    </message>
</context>
<context>
    <name>Fixture</name>
    <message>
        <source>The profile %1 has calibration data for %2 of its %3 channels.</source>
        <translation>Das Profil %1 hat Kalibrierdaten für %2 seiner %3 Kanäle.</translation>
    </message>
    <message>
        <source>A fixture needs a name.</source>
        <translation>Ein Gerät braucht einen Namen.</translation>
    </message>
    <message>
        <source>The profile of “%1” has no mode %2.</source>
        <translation>Das Profil von „%1“ hat keinen Modus %2.</translation>
    </message>
    <message>
        <source>“%1” would take slots %2 to %3; a universe has 1 to %4.</source>
        <translation>„%1“ bräuchte die Kanäle %2 bis %3; ein Universum hat 1 bis %4.</translation>
    </message>
    <message>
        <source>Universes are numbered from 0 to %1.</source>
        <translation>Universen haben die Nummern 0 bis %1.</translation>
    </message>
</context>
<context>
    <name>FixtureTable</name>
    <message>
        <source>Fixtures</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>No fixtures yet. Add some with the button above, then drop colours onto them.</source>
        <translation>Noch keine Geräte. Mit der Schaltfläche oben hinzufügen, dann Farben darauf ziehen.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Projects (*%1)</source>
        <translation>Projekte (*%1)</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Add Fixtures…</source>
        <translation>Geräte &amp;hinzufügen …</translation>
    </message>
    <message>
        <source>&amp;Duplicate Fixtures</source>
        <translation>Geräte &amp;verdoppeln</translation>
    </message>
    <message>
        <source>Re&amp;move Fixtures</source>
        <translation>Geräte &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Swatches</source>
        <translation>&amp;Farblisten</translation>
    </message>
    <message>
        <source>&amp;Send DMX</source>
        <translation>DMX &amp;senden</translation>
    </message>
    <message>
        <source>&amp;Blackout</source>
        <translation>Alles &amp;dunkel</translation>
    </message>
    <message>
        <source>&amp;Output</source>
        <translation>&amp;Ausgabe</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>A&amp;nsicht</translation>
    </message>
    <message>
        <source>&amp;Chart</source>
        <translation>Farb&amp;tafel</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>&lt;b&gt;%1 %2&lt;/b&gt;&lt;p&gt;Colours for LED fixtures: see them, drag them, light them.&lt;/p&gt;</source>
        <translation>&lt;b&gt;%1 %2&lt;/b&gt;&lt;p&gt;Farben für LED-Scheinwerfer: ansehen, ziehen, leuchten lassen.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Open Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>“%1” cannot be opened.</source>
        <translation>„%1“ kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Opening “%1”…</source>
        <translation>„%1“ wird geöffnet …</translation>
    </message>
    <message>
        <source>“%1” cannot be saved.</source>
        <translation>„%1“ kann nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Save Project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Unsaved Changes</source>
        <translation>Ungespeicherte Änderungen</translation>
    </message>
    <message>
        <source>The project has changes that are not saved.</source>
        <translation>Das Projekt hat Änderungen, die nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>Assign Colour</source>
        <translation>Farbe zuweisen</translation>
    </message>
    <message>
        <source>Select the fixtures that the crossfade shall move.</source>
        <translation>Wählen Sie die Geräte aus, die überblendet werden sollen.</translation>
    </message>
</context>
<context>
    <name>Patch</name>
    <message>
        <source>Fixture</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Name of the fixture</source>
        <translation>Name des Geräts</translation>
    </message>
    <message>
        <source>Universe</source>
        <translation>Universum</translation>
    </message>
    <message>
        <source>DMX universe, 0 to 65535</source>
        <translation>DMX-Universum, 0 bis 65535</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>First slot in the universe, 1 to 512</source>
        <translation>Erster Kanal im Universum, 1 bis 512</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Drop a colour here, or edit it above</source>
        <translation>Farbe hierher ziehen oder oben bearbeiten</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>What each channel receives</source>
        <translation>Was jeder Kanal empfängt</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Bytes</translation>
    </message>
    <message>
        <source>The DMX bytes of the fixture</source>
        <translation>Die DMX-Bytes des Geräts</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Family of fixtures, with its emitters</source>
        <translation>Gerätefamilie mit ihren Emittern</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
    <message>
        <source>How colours map onto the channels</source>
        <translation>Wie Farben auf die Kanäle kommen</translation>
    </message>
    <message>
        <source>Calibrated</source>
        <translation>Kalibriert</translation>
    </message>
    <message>
        <source>Whether RGB colours are solved through the measured emitters</source>
        <translation>Ob RGB-Farben über die gemessenen Emitter gelöst werden</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>Bits of a channel</source>
        <translation>Bits eines Kanals</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>Dimming curve applied by this program</source>
        <translation>Dimmkurve, die dieses Programm anwendet</translation>
    </message>
    <message>
        <source>On-board curve</source>
        <translation>Kurve im Gerät</translation>
    </message>
    <message>
        <source>Dimming curve of the fixture, compensated for</source>
        <translation>Dimmkurve des Geräts, die ausgeglichen wird</translation>
    </message>
    <message>
        <source>%1 bit</source>
        <translation>%1 Bit</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Slots %1 to %2</source>
        <translation>Kanäle %1 bis %2</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
    <message>
        <source>The profile of “%1” does not offer that.</source>
        <translation>Das Profil von „%1“ bietet das nicht.</translation>
    </message>
    <message>
        <source>Add Fixtures</source>
        <translation>Geräte hinzufügen</translation>
    </message>
    <message>
        <source>Remove Fixtures</source>
        <translation>Geräte entfernen</translation>
    </message>
    <message>
        <source>Universe %1 has no room for another “%2”.</source>
        <translation>In Universum %1 ist kein Platz für ein weiteres „%2“.</translation>
    </message>
    <message>
        <source>Assign Colour</source>
        <translation>Farbe zuweisen</translation>
    </message>
    <message>
        <source>Overlaps “%1”, slots %2 to %3.</source>
        <translation>Überschneidet sich mit „%1“, Kanäle %2 bis %3.</translation>
    </message>
</context>
<context>
    <name>ProjectFile</name>
    <message>
        <source>Document type declarations are not allowed.</source>
        <translation>Dokumenttyp-Deklarationen sind nicht erlaubt.</translation>
    </message>
    <message>
        <source>The elements are nested too deeply.</source>
        <translation>Die Elemente sind zu tief verschachtelt.</translation>
    </message>
    <message>
        <source>The fixture&apos;s attribute “%1” is “%2”; it must be a number from %3 to %4.</source>
        <translation>Das Attribut „%1“ des Geräts ist „%2“; es muss eine Zahl von %3 bis %4 sein.</translation>
    </message>
    <message>
        <source>“%1” is no colour.</source>
        <translation>„%1“ ist keine Farbe.</translation>
    </message>
    <message>
        <source>A list of colours is empty.</source>
        <translation>Eine Farbliste ist leer.</translation>
    </message>
    <message>
        <source>This is no project: it begins with “%1”.</source>
        <translation>Das ist kein Projekt: Es beginnt mit „%1“.</translation>
    </message>
    <message>
        <source>The project was made by a newer version of this program.</source>
        <translation>Das Projekt stammt von einer neueren Version dieses Programms.</translation>
    </message>
    <message>
        <source>It is no file.</source>
        <translation>Es ist keine Datei.</translation>
    </message>
    <message>
        <source>The file is too large for a project.</source>
        <translation>Die Datei ist zu groß für ein Projekt.</translation>
    </message>
    <message>
        <source>“%1” is no uid in braces.</source>
        <translation>„%1“ ist keine Kennung in geschweiften Klammern.</translation>
    </message>
    <message>
        <source>Two colours have the uid “%1”.</source>
        <translation>Zwei Farben haben die Kennung „%1“.</translation>
    </message>
</context>
<context>
    <name>SwatchBrowser</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search colours</source>
        <translation>Farben suchen</translation>
    </message>
    <message>
        <source>Order of the colours</source>
        <translation>Reihenfolge der Farben</translation>
    </message>
    <message>
        <source>Order of the colours in the view; the lists stay as they are</source>
        <translation>Reihenfolge der Farben in der Ansicht; die Listen bleiben, wie sie sind</translation>
    </message>
    <message>
        <source>As arranged</source>
        <translation>Angeordnet</translation>
    </message>
    <message>
        <source>By name</source>
        <translation>Nach Namen</translation>
    </message>
    <message>
        <source>By hue</source>
        <translation>Nach Farbton</translation>
    </message>
    <message>
        <source>New &amp;List</source>
        <translation>Neue &amp;Liste</translation>
    </message>
    <message>
        <source>New &amp;Colour</source>
        <translation>Neue &amp;Farbe</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>Set to &amp;Edited Colour</source>
        <translation>Auf &amp;bearbeitete Farbe setzen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>Lös&amp;chen</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move Do&amp;wn</source>
        <translation>Nach un&amp;ten</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>“%1” cannot be used. %2</source>
        <translation>„%1“ kann nicht verwendet werden. %2</translation>
    </message>
    <message>
        <source>New List</source>
        <translation>Neue Liste</translation>
    </message>
    <message>
        <source>My Colours</source>
        <translation>Meine Farben</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>“%1” cannot be renamed.</source>
        <translation>„%1“ kann nicht umbenannt werden.</translation>
    </message>
    <message>
        <source>A name cannot be empty.</source>
        <translation>Ein Name kann nicht leer sein.</translation>
    </message>
    <message>
        <source>There is a list called “%1” already.</source>
        <translation>Es gibt schon eine Liste namens „%1“.</translation>
    </message>
    <message>
        <source>“%1” has a colour called “%2” already.</source>
        <translation>„%1“ hat schon eine Farbe namens „%2“.</translation>
    </message>
    <message>
        <source>“%1” cannot be deleted.</source>
        <translation>„%1“ kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>“%1” is a preset and cannot be changed.</source>
        <translation>„%1“ ist eine Vorgabe und kann nicht geändert werden.</translation>
    </message>
    <message>
        <source>Delete Lists and Colours</source>
        <translation>Listen und Farben löschen</translation>
    </message>
    <message>
        <source>Colours move within one list, while it is shown whole and as arranged.</source>
        <translation>Farben lassen sich innerhalb einer Liste verschieben, solange sie ganz und wie angeordnet zu sehen ist.</translation>
    </message>
    <message>
        <source>“%1” cannot be moved.</source>
        <translation>„%1“ kann nicht verschoben werden.</translation>
    </message>
    <message>
        <source>There is no list to paste into.</source>
        <translation>Es gibt keine Liste, in die eingefügt werden kann.</translation>
    </message>
    <message>
        <source>There are no colours in it.</source>
        <translation>Darin sind keine Farben.</translation>
    </message>
</context>
<context>
    <name>SwatchCommands</name>
    <message>
        <source>Delete List</source>
        <translation>Liste löschen</translation>
    </message>
    <message numerus="yes">
        <source>Delete %n Lists</source>
        <translation>
            <numerusform>%n Liste löschen</numerusform>
            <numerusform>%n Listen löschen</numerusform>
        </translation>
    </message>
    <message>
        <source>Create Colour</source>
        <translation>Farbe anlegen</translation>
    </message>
    <message numerus="yes">
        <source>Create %n Colours</source>
        <translation>
            <numerusform>%n Farbe anlegen</numerusform>
            <numerusform>%n Farben anlegen</numerusform>
        </translation>
    </message>
    <message>
        <source>Delete Colour</source>
        <translation>Farbe löschen</translation>
    </message>
    <message numerus="yes">
        <source>Delete %n Colours</source>
        <translation>
            <numerusform>%n Farbe löschen</numerusform>
            <numerusform>%n Farben löschen</numerusform>
        </translation>
    </message>
    <message>
        <source>Move Colour</source>
        <translation>Farbe verschieben</translation>
    </message>
    <message numerus="yes">
        <source>Move %n Colours</source>
        <translation>
            <numerusform>%n Farbe verschieben</numerusform>
            <numerusform>%n Farben verschieben</numerusform>
        </translation>
    </message>
    <message>
        <source>Change Colour</source>
        <translation>Farbe ändern</translation>
    </message>
    <message numerus="yes">
        <source>Change %n Colours</source>
        <translation>
            <numerusform>%n Farbe ändern</numerusform>
            <numerusform>%n Farben ändern</numerusform>
        </translation>
    </message>
    <message>
        <source>Create List</source>
        <translation>Liste anlegen</translation>
    </message>
    <message>
        <source>Rename List</source>
        <translation>Liste umbenennen</translation>
    </message>
    <message>
        <source>Move List</source>
        <translation>Liste verschieben</translation>
    </message>
    <message>
        <source>Rename Colour</source>
        <translation>Farbe umbenennen</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
</context>
<context>
    <name>SwatchTree</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Colour lists</source>
        <translation>Farblisten</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Colours for LED fixtures</source>
        <translation>Farben für LED-Scheinwerfer</translation>
    </message>
    <message>
        <source>Port of the OLA daemon on this machine</source>
        <translation>Port des OLA-Dienstes auf diesem Rechner</translation>
    </message>
    <message>
        <source>Send DMX at once</source>
        <translation>Gleich DMX senden</translation>
    </message>
    <message>
        <source>Project to open</source>
        <translation>Projekt, das geöffnet wird</translation>
    </message>
    <message>
        <source>The port must be a number from 1 to 65535.</source>
        <translation>Der Port muss eine Zahl von 1 bis 65535 sein.</translation>
    </message>
</context>
</TS>
