<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name></name>
    <message>
        <source>Luma</source>
        <translation>Luma</translation>
    </message>
    <message>
        <source>Without perspective</source>
        <translation>Ohne Perspektive</translation>
    </message>
    <message>
        <source>Edges of the signal</source>
        <translation>Kanten des Signals</translation>
    </message>
    <message>
        <source>Grey axis</source>
        <translation>Grauachse</translation>
    </message>
    <message>
        <source>Rec 709 in this space</source>
        <translation>Rec 709 in diesem Raum</translation>
    </message>
    <message>
        <source>Rec 2020 in this space</source>
        <translation>Rec 2020 in diesem Raum</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Kanäle</translation>
    </message>
    <message>
        <source>Logarithmic heights</source>
        <translation>Logarithmische Höhen</translation>
    </message>
    <message>
        <source>Cumulative line</source>
        <translation>Summenlinie</translation>
    </message>
    <message>
        <source>Areas in proportion</source>
        <translation>Flächen im Verhältnis</translation>
    </message>
    <message>
        <source>Fit range to values</source>
        <translation>Bereich an Werte anpassen</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Verstärkung</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Phosphor</source>
        <translation>Leuchtfarbe</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>Targets of 75 %</source>
        <translation>Ziele von 75 %</translation>
    </message>
    <message>
        <source>Targets of 100 %</source>
        <translation>Ziele von 100 %</translation>
    </message>
    <message>
        <source>Large boxes</source>
        <translation>Große Kästen</translation>
    </message>
    <message>
        <source>Hull of the gamut</source>
        <translation>Hülle des Farbraums</translation>
    </message>
    <message>
        <source>I and Q</source>
        <translation>I und Q</translation>
    </message>
    <message>
        <source>Skin tone line</source>
        <translation>Hauttonlinie</translation>
    </message>
    <message>
        <source>Logarithmic distances</source>
        <translation>Logarithmische Abstände</translation>
    </message>
    <message>
        <source>RGB, overlaid</source>
        <translation>RGB, überlagert</translation>
    </message>
    <message>
        <source>RGB, parade</source>
        <translation>RGB, nebeneinander</translation>
    </message>
    <message>
        <source>RGB, stacked</source>
        <translation>RGB, übereinander</translation>
    </message>
    <message>
        <source>YCbCr, parade</source>
        <translation>YCbCr, nebeneinander</translation>
    </message>
    <message>
        <source>YCbCr, stacked</source>
        <translation>YCbCr, übereinander</translation>
    </message>
    <message>
        <source>Envelope</source>
        <translation>Hüllkurve</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Of the picture</source>
        <translation>Des Bildes</translation>
    </message>
    <message>
        <source>Of all pictures</source>
        <translation>Aller Bilder</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Limits</source>
        <translation>Grenzen</translation>
    </message>
    <message>
        <source>0 and 100 %</source>
        <translation>0 und 100 %</translation>
    </message>
    <message>
        <source>EBU R 103</source>
        <translation>EBU R 103</translation>
    </message>
    <message>
        <source>Second unit</source>
        <translation>Zweite Einheit</translation>
    </message>
    <message>
        <source>Second unit visible</source>
        <translation>Zweite Einheit sichtbar</translation>
    </message>
    <message>
        <source>By rows</source>
        <translation>Nach Zeilen</translation>
    </message>
    <message>
        <source>Forget peaks</source>
        <translation>Spitzen vergessen</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Raum</translation>
    </message>
    <message>
        <source>Look from</source>
        <translation>Blick von</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Persönlicher Ordner</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorn</translation>
    </message>
    <message>
        <source>Side</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Lines</source>
        <translation>Linien</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Anordnung</translation>
    </message>
    <message>
        <source>On each other</source>
        <translation>Aufeinander</translation>
    </message>
    <message>
        <source>Above each other</source>
        <translation>Übereinander</translation>
    </message>
    <message>
        <source>Side by side</source>
        <translation>Nebeneinander</translation>
    </message>
</context>
<context>
    <name>EventGraphReader</name>
    <message>
        <source>%1
Line %2, column %3</source>
        <translation>%1
Zeile %2, Spalte %3</translation>
    </message>
    <message>
        <source>The file doesn&apos;t contain an event graph</source>
        <translation>Die Datei enthält keine Ereignisaufzeichnung</translation>
    </message>
    <message>
        <source>The device is not open for reading</source>
        <translation>Das Gerät ist nicht zum Lesen geöffnet</translation>
    </message>
</context>
<context>
    <name>FileChooserDialog</name>
    <message>
        <source>Checking…</source>
        <translation>Wird geprüft …</translation>
    </message>
    <message>
        <source>Files used last</source>
        <translation>Zuletzt benutzte Dateien</translation>
    </message>
    <message>
        <source>Version before (Ctrl+Minus)</source>
        <translation>Vorige Version (Strg+Minus)</translation>
    </message>
    <message>
        <source>Next version (Ctrl+Plus)</source>
        <translation>Nächste Version (Strg+Plus)</translation>
    </message>
    <message>
        <source>Frames to be opened, as 1001-1100 or 1001-1100x2</source>
        <translation>Zu öffnende Bilder, etwa 1001-1100 oder 1001-1100x2</translation>
    </message>
    <message>
        <source>Fra&amp;mes:</source>
        <translation>&amp;Bilder:</translation>
    </message>
    <message>
        <source>Sequence</source>
        <translation>Sequenz</translation>
    </message>
    <message>
        <source>Single file</source>
        <translation>Einzelne Datei</translation>
    </message>
    <message>
        <source>As:</source>
        <translation>Als:</translation>
    </message>
    <message>
        <source>As</source>
        <translation>Als</translation>
    </message>
    <message>
        <source>Digits of the frame at least</source>
        <translation>Mindestzahl der Ziffern des Bildes</translation>
    </message>
    <message>
        <source>&amp;Padding:</source>
        <translation>&amp;Stellen:</translation>
    </message>
    <message>
        <source>F&amp;ilter:</source>
        <translation>F&amp;ilter:</translation>
    </message>
    <message>
        <source>Show what the filter beside it asks for again</source>
        <translation>Wieder zeigen, wonach der Filter daneben fragt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>No frame of this sequence lies in %1.</source>
        <translation>Kein Bild dieser Sequenz liegt in %1.</translation>
    </message>
    <message>
        <source>Frames are written as 1001-1100, or 1001-1100x2 for every second one.</source>
        <translation>Bilder schreibt man als 1001-1100, oder 1001-1100x2 für jedes zweite.</translation>
    </message>
    <message>
        <source>This file exists and would be replaced.</source>
        <translation>Diese Datei gibt es; sie würde ersetzt.</translation>
    </message>
    <message>
        <source>Frame %1 exists and would be replaced.</source>
        <translation>Bild %1 gibt es; es würde ersetzt.</translation>
    </message>
    <message numerus="yes">
        <source>%n frames exist and would be replaced (%1).</source>
        <translation>
            <numerusform>%n Bild gibt es; es würde ersetzt (%1).</numerusform>
            <numerusform>%n Bilder gibt es; sie würden ersetzt (%1).</numerusform>
        </translation>
    </message>
    <message>
        <source>Frame %1 is missing</source>
        <translation>Bild %1 fehlt</translation>
    </message>
    <message numerus="yes">
        <source>%n frames are missing: %1</source>
        <translation>
            <numerusform>%n Bild fehlt: %1</numerusform>
            <numerusform>%n Bilder fehlen: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” exists in “%2” and would be lost.</source>
        <translation>„%1“ gibt es in „%2“; die Datei ginge verloren.</translation>
    </message>
    <message>
        <source>One frame of “%1” exists in “%2” and would be lost.</source>
        <translation>Ein Bild von „%1“ gibt es in „%2“; es ginge verloren.</translation>
    </message>
    <message numerus="yes">
        <source>%n frames of “%1” exist in “%2” and would be lost.</source>
        <translation>
            <numerusform>%n Bild von „%1“ gibt es in „%2“; es ginge verloren.</numerusform>
            <numerusform>%n Bilder von „%1“ gibt es in „%2“; sie gingen verloren.</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no file “%1” in this folder.</source>
        <translation>In diesem Ordner gibt es keine Datei „%1“.</translation>
    </message>
    <message>
        <source>Only one name can be given here.</source>
        <translation>Hier kann nur ein Name stehen.</translation>
    </message>
    <message>
        <source>All files have to lie in one folder.</source>
        <translation>Alle Dateien müssen in einem Ordner liegen.</translation>
    </message>
    <message>
        <source>The name “%1” has a character that no file name may have.</source>
        <translation>Der Name „%1“ enthält ein Zeichen, das in keinem Dateinamen stehen darf.</translation>
    </message>
    <message>
        <source>The name “%1” is kept for a device.</source>
        <translation>Der Name „%1“ gehört einem Gerät.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Der Name ist zu lang.</translation>
    </message>
    <message>
        <source>A folder has the name “%1”.</source>
        <translation>Ein Ordner heißt „%1“.</translation>
    </message>
    <message>
        <source>A single file is wanted here, not a sequence.</source>
        <translation>Hier ist eine einzelne Datei gefragt, keine Sequenz.</translation>
    </message>
    <message>
        <source>A sequence is wanted here, not a single file.</source>
        <translation>Hier ist eine Sequenz gefragt, keine einzelne Datei.</translation>
    </message>
    <message>
        <source>You have no permission to write in this folder.</source>
        <translation>Ihnen fehlt die Berechtigung, in diesen Ordner zu schreiben.</translation>
    </message>
    <message>
        <source>The folder %1 could not be made: %2</source>
        <translation>Der Ordner %1 ließ sich nicht anlegen: %2</translation>
    </message>
    <message>
        <source>The folder %1 will be made.</source>
        <translation>Der Ordner %1 wird angelegt.</translation>
    </message>
    <message>
        <source>Replace files?</source>
        <translation>Dateien ersetzen?</translation>
    </message>
    <message>
        <source>Replace the file?</source>
        <translation>Datei ersetzen?</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>The folder does not answer</source>
        <translation>Der Ordner antwortet nicht</translation>
    </message>
    <message>
        <source>It is not known whether the file exists: the folder does not answer.</source>
        <translation>Ob es die Datei gibt, ist nicht bekannt: Der Ordner antwortet nicht.</translation>
    </message>
    <message>
        <source>&amp;Save Anyway</source>
        <translation>Trotzdem &amp;speichern</translation>
    </message>
    <message>
        <source>It is not known whether what was chosen exists: the folder does not answer.</source>
        <translation>Ob es das Gewählte gibt, ist nicht bekannt: Der Ordner antwortet nicht.</translation>
    </message>
    <message>
        <source>C&amp;hoose Anyway</source>
        <translation>Trotzdem &amp;wählen</translation>
    </message>
    <message>
        <source>&amp;Open Anyway</source>
        <translation>Trotzdem ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>C&amp;hoose</source>
        <translation>&amp;Wählen</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open Files</source>
        <translation>Dateien öffnen</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>Choose a Folder</source>
        <translation>Einen Ordner wählen</translation>
    </message>
    <message>
        <source>Fol&amp;der:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>Filter: %1</translation>
    </message>
    <message>
        <source>None yet</source>
        <translation>Noch keine</translation>
    </message>
</context>
<context>
    <name>FileListModel</name>
    <message>
        <source>Today %1</source>
        <translation>Heute %1</translation>
    </message>
    <message>
        <source>Yesterday %1</source>
        <translation>Gestern %1</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Verknüpfung</translation>
    </message>
    <message>
        <source>%1, sequence</source>
        <translation>%1, Sequenz</translation>
    </message>
    <message>
        <source>frames %1 to %2</source>
        <translation>Bilder %1 bis %2</translation>
    </message>
    <message>
        <source>%1 missing</source>
        <translation>%1 fehlen</translation>
    </message>
    <message>
        <source>about %1</source>
        <translation>etwa %1</translation>
    </message>
    <message>
        <source>modified %1</source>
        <translation>geändert %1</translation>
    </message>
    <message>
        <source>does not exist any more</source>
        <translation>gibt es nicht mehr</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Missing</source>
        <translation>Fehlend</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Art</translation>
    </message>
</context>
<context>
    <name>FileManager</name>
    <message>
        <source>Too many folders do not answer.</source>
        <translation>Zu viele Ordner antworten nicht.</translation>
    </message>
    <message>
        <source>This folder does not exist.</source>
        <translation>Diesen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>This is not a folder.</source>
        <translation>Das ist kein Ordner.</translation>
    </message>
    <message>
        <source>You have no permission to read this folder.</source>
        <translation>Ihnen fehlt die Berechtigung, diesen Ordner zu lesen.</translation>
    </message>
    <message>
        <source>The server of this folder does not answer.</source>
        <translation>Der Server dieses Ordners antwortet nicht.</translation>
    </message>
    <message>
        <source>This folder is a link that leads round in a circle.</source>
        <translation>Dieser Ordner ist eine Verknüpfung, die im Kreis führt.</translation>
    </message>
    <message>
        <source>Too many files are open. Close some and try again.</source>
        <translation>Es sind zu viele Dateien offen. Schließen Sie einige und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>There is not enough memory to list this folder.</source>
        <translation>Der Speicher reicht nicht, um diesen Ordner aufzulisten.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Der Name ist zu lang.</translation>
    </message>
    <message>
        <source>This folder cannot be read: %1.</source>
        <translation>Dieser Ordner lässt sich nicht lesen: %1.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>%1 image</source>
        <translation>%1-Bild</translation>
    </message>
    <message>
        <source>%1 file</source>
        <translation>%1-Datei</translation>
    </message>
    <message>
        <source>It was stopped.</source>
        <translation>Es wurde angehalten.</translation>
    </message>
    <message numerus="yes">
        <source>Reading was stopped after %n entries.</source>
        <translation>
            <numerusform>Das Lesen wurde nach %n Eintrag angehalten.</numerusform>
            <numerusform>Das Lesen wurde nach %n Einträgen angehalten.</numerusform>
        </translation>
    </message>
    <message>
        <source>This folder does not exist any more.</source>
        <translation>Diesen Ordner gibt es nicht mehr.</translation>
    </message>
    <message numerus="yes">
        <source>Reading stopped after %n entries: %1</source>
        <translation>
            <numerusform>Das Lesen endete nach %n Eintrag: %1</numerusform>
            <numerusform>Das Lesen endete nach %n Einträgen: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” has no place for the numbers of frames.</source>
        <translation>„%1“ hat keine Stelle für Bildnummern.</translation>
    </message>
    <message>
        <source>“%1” does not exist.</source>
        <translation>„%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>“%1” does not lie in a folder.</source>
        <translation>„%1“ liegt in keinem Ordner.</translation>
    </message>
    <message>
        <source>You have no permission to change “%1”.</source>
        <translation>Sie haben kein Recht, „%1“ zu ändern.</translation>
    </message>
    <message>
        <source>The server of “%1” does not answer.</source>
        <translation>Der Server von „%1“ antwortet nicht.</translation>
    </message>
    <message>
        <source>The name “%1” is too long.</source>
        <translation>Der Name „%1“ ist zu lang.</translation>
    </message>
    <message>
        <source>“%1” exists already.</source>
        <translation>„%1“ gibt es schon.</translation>
    </message>
    <message>
        <source>There is no room left on the disk of “%1”.</source>
        <translation>Auf dem Datenträger von „%1“ ist kein Platz mehr.</translation>
    </message>
    <message>
        <source>The disk of “%1” can only be read.</source>
        <translation>Der Datenträger von „%1“ lässt sich nur lesen.</translation>
    </message>
    <message>
        <source>“%1” cannot be moved to another disk by renaming.</source>
        <translation>„%1“ lässt sich nicht durch Umbenennen auf einen anderen Datenträger verschieben.</translation>
    </message>
    <message>
        <source>“%1” cannot be changed: %2.</source>
        <translation>„%1“ lässt sich nicht ändern: %2.</translation>
    </message>
</context>
<context>
    <name>FilePathEdit</name>
    <message>
        <source>This is on another computer.</source>
        <translation>Das liegt auf einem anderen Rechner.</translation>
    </message>
    <message>
        <source>This is no path.</source>
        <translation>Das ist kein Pfad.</translation>
    </message>
    <message>
        <source>This is a folder.</source>
        <translation>Das ist ein Ordner.</translation>
    </message>
    <message>
        <source>This is not a folder.</source>
        <translation>Das ist kein Ordner.</translation>
    </message>
    <message>
        <source>This file exists.</source>
        <translation>Diese Datei gibt es.</translation>
    </message>
    <message>
        <source>This folder does not exist.</source>
        <translation>Diesen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>This file does not exist.</source>
        <translation>Diese Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>The server of this path does not answer.</source>
        <translation>Der Server dieses Pfads antwortet nicht.</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Einen Ordner wählen</translation>
    </message>
    <message>
        <source>Choose a path</source>
        <translation>Einen Pfad wählen</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Eine Datei wählen</translation>
    </message>
    <message>
        <source>%1 (F4)</source>
        <translation>%1 (F4)</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Wird gesucht …</translation>
    </message>
</context>
<context>
    <name>FrameSlider</name>
    <message>
        <source>Frame</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Step Back</source>
        <translation>Schritt zurück</translation>
    </message>
    <message>
        <source>Step Forward</source>
        <translation>Schritt vor</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::Chart</name>
    <message>
        <source>No data</source>
        <translation>Keine Daten</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1 bei %2</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>Diagramm</translation>
    </message>
    <message>
        <source>Others</source>
        <translation>Übrige</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Helligkeit</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ChartLegend</name>
    <message>
        <source>Legend</source>
        <translation>Legende</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ChoiceBar</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ChoiceButton</name>
    <message>
        <source>Choice</source>
        <translation>Auswahl</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CollapsibleToolbar</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorButton</name>
    <message>
        <source>&amp;Copy colour</source>
        <translation>Farbe &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste colour</source>
        <translation>Farbe &amp;einfügen</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorCodeEdit</name>
    <message>
        <source>Colour code</source>
        <translation>Farbcode</translation>
    </message>
    <message>
        <source>The code of what the screen shows</source>
        <translation>Der Code dessen, was der Bildschirm zeigt</translation>
    </message>
    <message>
        <source>The code of what the screen shows: %1</source>
        <translation>Der Code dessen, was der Bildschirm zeigt: %1</translation>
    </message>
    <message>
        <source>The screen can not show this colour; the code is only near it</source>
        <translation>Der Bildschirm kann diese Farbe nicht zeigen; der Code kommt ihr nur nahe</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorField</name>
    <message>
        <source>Colour field</source>
        <translation>Farbfeld</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorModel</name>
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
        <source>Alpha</source>
        <translation>Alpha</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Magenta</source>
        <translation>Magenta</translation>
    </message>
    <message>
        <source>Intensity</source>
        <translation>Intensität</translation>
    </message>
    <message>
        <source>Luma</source>
        <translation>Luma</translation>
    </message>
    <message>
        <source>Cb</source>
        <translation>Cb</translation>
    </message>
    <message>
        <source>Cr</source>
        <translation>Cr</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorPicker</name>
    <message>
        <source>Ex</source>
        <comment>exposure, short</comment>
        <translation>Bel</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Exposure of the colour, in stops</source>
        <translation>Belichtung der Farbe, in Blenden</translation>
    </message>
    <message>
        <source>Coding</source>
        <translation>Kodierung</translation>
    </message>
    <message>
        <source>By which luma, Cb and Cr are made of red, green, blue</source>
        <translation>Nach der Luma, Cb und Cr aus Rot, Grün, Blau entstehen</translation>
    </message>
    <message>
        <source>Linked channels keep to their ratios</source>
        <translation>Verbundene Kanäle behalten ihre Verhältnisse</translation>
    </message>
    <message>
        <source>Linked</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Parts below 0 are seen as 0 here; an edit clears them.</source>
        <translation>Anteile unter 0 gelten hier als 0; eine Änderung entfernt sie.</translation>
    </message>
    <message>
        <source>Keep Colour</source>
        <translation>Farbe behalten</translation>
    </message>
    <message>
        <source>Previous colour</source>
        <translation>Vorige Farbe</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Pipette</source>
        <translation>Pipette</translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Rad</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Swatches</source>
        <translation>Farbfelder</translation>
    </message>
    <message>
        <source>%1 stays</source>
        <translation>%1 bleibt</translation>
    </message>
    <message>
        <source>Pick from the &amp;screen</source>
        <translation>Vom &amp;Bildschirm aufnehmen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorSampler</name>
    <message>
        <source>Take a colour from anywhere on the screen (I)</source>
        <translation>Eine Farbe irgendwo vom Bildschirm aufnehmen (I)</translation>
    </message>
    <message>
        <source>Take a colour from the windows of this application (I); the desktop keeps those of others to itself</source>
        <translation>Eine Farbe aus den Fenstern dieses Programms aufnehmen (I); die anderer Programme behält der Desktop für sich</translation>
    </message>
    <message>
        <source>No colour can be taken here</source>
        <translation>Hier lässt sich keine Farbe aufnehmen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorSpaceScope</name>
    <message>
        <source>K</source>
        <comment>black</comment>
        <translation>S</translation>
    </message>
    <message>
        <source>R</source>
        <comment>red</comment>
        <translation>R</translation>
    </message>
    <message>
        <source>G</source>
        <comment>green</comment>
        <translation>G</translation>
    </message>
    <message>
        <source>Yl</source>
        <comment>yellow</comment>
        <translation>Ge</translation>
    </message>
    <message>
        <source>B</source>
        <comment>blue</comment>
        <translation>B</translation>
    </message>
    <message>
        <source>Mg</source>
        <comment>magenta</comment>
        <translation>Mg</translation>
    </message>
    <message>
        <source>Cy</source>
        <comment>cyan</comment>
        <translation>Cy</translation>
    </message>
    <message>
        <source>W</source>
        <comment>white</comment>
        <translation>W</translation>
    </message>
    <message>
        <source>Beyond %1</source>
        <translation>Jenseits von %1</translation>
    </message>
    <message>
        <source>Luma %1 to %2</source>
        <translation>Luma %1 bis %2</translation>
    </message>
    <message>
        <source>From %1 px</source>
        <translation>Ab %1 px</translation>
    </message>
    <message>
        <source>YCbCr</source>
        <translation>YCbCr</translation>
    </message>
    <message>
        <source>HSV cone</source>
        <translation>HSV-Kegel</translation>
    </message>
    <message>
        <source>RGB cube</source>
        <translation>RGB-Würfel</translation>
    </message>
    <message>
        <source>Colour space</source>
        <translation>Farbraum</translation>
    </message>
    <message>
        <source>Y %1, Cb %2, Cr %3</source>
        <translation>Y %1, Cb %2, Cr %3</translation>
    </message>
    <message>
        <source>H %1°, S %2 %, V %3</source>
        <translation>H %1°, S %2 %, V %3</translation>
    </message>
    <message>
        <source>R %1, G %2, B %3</source>
        <translation>R %1, G %2, B %3</translation>
    </message>
    <message>
        <source>%1, %2 of them beyond</source>
        <translation>%1, davon %2 jenseits</translation>
    </message>
    <message>
        <source>%1 along each edge</source>
        <translation>%1 je Kante</translation>
    </message>
    <message>
        <source>Cells</source>
        <translation>Zellen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorSwatch</name>
    <message>
        <source>Red %1, green %2, blue %3</source>
        <translation>Rot %1, Grün %2, Blau %3</translation>
    </message>
    <message>
        <source>, alpha %1</source>
        <translation>, Alpha %1</translation>
    </message>
    <message>
        <source>&amp;Copy colour</source>
        <translation>Farbe &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste colour</source>
        <translation>Farbe &amp;einfügen</translation>
    </message>
    <message>
        <source>Colour swatch</source>
        <translation>Farbfeld</translation>
    </message>
    <message>
        <source>Copy colour</source>
        <translation>Farbe kopieren</translation>
    </message>
    <message>
        <source>Paste colour</source>
        <translation>Farbe einfügen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ColorWheel</name>
    <message>
        <source>Colour wheel</source>
        <translation>Farbkreis</translation>
    </message>
    <message>
        <source>Hue %1°, saturation %2 %, value %3 %</source>
        <translation>Farbton %1°, Sättigung %2 %, Helligkeit %3 %</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CompletionPopup</name>
    <message numerus="yes">
        <source>%n more</source>
        <translation>
            <numerusform>%n weitere</numerusform>
            <numerusform>%n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Completions</source>
        <translation>Ergänzungen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CrumbButton</name>
    <message>
        <source>Folders in %1</source>
        <translation>Ordner in %1</translation>
    </message>
    <message>
        <source>Folders between</source>
        <translation>Ordner dazwischen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CrumbMenu</name>
    <message>
        <source>Reading…</source>
        <translation>Wird gelesen …</translation>
    </message>
    <message>
        <source>More in the List</source>
        <translation>Mehr in der Liste</translation>
    </message>
    <message>
        <source>No folders</source>
        <translation>Keine Ordner</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CurveEditor</name>
    <message>
        <source>reset</source>
        <translation>zurücksetzen</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no curve that fits here</source>
        <translation>„%1“ ist keine Kurve, die hierher passt</translation>
    </message>
    <message>
        <source>copy to %1</source>
        <translation>nach %1 kopieren</translation>
    </message>
    <message>
        <source>copy to others</source>
        <translation>auf andere kopieren</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>X of the selected knots</source>
        <translation>X der ausgewählten Knoten</translation>
    </message>
    <message>
        <source>Y of the selected knots</source>
        <translation>Y der ausgewählten Knoten</translation>
    </message>
    <message>
        <source>Constant</source>
        <translation>Konstant</translation>
    </message>
    <message>
        <source>Linear</source>
        <translation>Linear</translation>
    </message>
    <message>
        <source>Smooth</source>
        <translation>Glatt</translation>
    </message>
    <message>
        <source>Monotone</source>
        <translation>Monoton</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Natürlich</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>Frei</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Shape of the selected knots</source>
        <translation>Form der ausgewählten Knoten</translation>
    </message>
    <message>
        <source>How the line goes on from the selected knots</source>
        <translation>Wie die Linie nach den ausgewählten Knoten weitergeht</translation>
    </message>
    <message>
        <source>Shown Curves</source>
        <translation>Gezeigte Kurven</translation>
    </message>
    <message>
        <source>Which curves are shown</source>
        <translation>Welche Kurven gezeigt werden</translation>
    </message>
    <message>
        <source>Snap</source>
        <translation>Einrasten</translation>
    </message>
    <message>
        <source>Drags snap to knots, lines and whole values</source>
        <translation>Beim Ziehen rasten Knoten an Knoten, Linien und ganzen Werten ein</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Rahmen</translation>
    </message>
    <message>
        <source>A frame around the selected knots, to scale them by</source>
        <translation>Ein Rahmen um die ausgewählten Knoten, mit dem sie skaliert werden</translation>
    </message>
    <message>
        <source>Show All</source>
        <translation>Alles zeigen</translation>
    </message>
    <message>
        <source>Shows the whole range and all knots</source>
        <translation>Zeigt den ganzen Bereich und alle Knoten</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Makes the curve the identity</source>
        <translation>Macht die Kurve zur Identität</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Vorlagen</translation>
    </message>
    <message>
        <source>Curves to begin with</source>
        <translation>Kurven für den Anfang</translation>
    </message>
    <message>
        <source>Copy To</source>
        <translation>Kopieren nach</translation>
    </message>
    <message>
        <source>Makes other curves what this one is</source>
        <translation>Macht andere Kurven zu dem, was diese ist</translation>
    </message>
    <message>
        <source>Axes</source>
        <translation>Achsen</translation>
    </message>
    <message>
        <source>How the axes are drawn</source>
        <translation>Wie die Achsen gezeichnet werden</translation>
    </message>
    <message>
        <source>Logarithmic</source>
        <translation>Logarithmisch</translation>
    </message>
    <message>
        <source>Shadows</source>
        <translation>Schatten</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>No Others</source>
        <translation>Keine anderen</translation>
    </message>
    <message>
        <source>Scale of x</source>
        <translation>Skala von x</translation>
    </message>
    <message>
        <source>Scale of y</source>
        <translation>Skala von y</translation>
    </message>
    <message>
        <source>How far shadows are opened</source>
        <translation>Wie weit die Schatten geöffnet werden</translation>
    </message>
    <message>
        <source>All Others</source>
        <translation>Alle anderen</translation>
    </message>
    <message>
        <source>Identity</source>
        <translation>Identität</translation>
    </message>
    <message>
        <source>Invert</source>
        <translation>Umkehren</translation>
    </message>
    <message>
        <source>Soft S</source>
        <translation>Weiches S</translation>
    </message>
    <message>
        <source>Strong S</source>
        <translation>Starkes S</translation>
    </message>
    <message>
        <source>Gamma 2.2</source>
        <translation>Gamma 2,2</translation>
    </message>
    <message>
        <source>Gamma 1/2.2</source>
        <translation>Gamma 1/2,2</translation>
    </message>
    <message>
        <source>Save Curve...</source>
        <translation>Kurve sichern...</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Vergessen</translation>
    </message>
    <message>
        <source>Save Curve</source>
        <translation>Kurve sichern</translation>
    </message>
    <message>
        <source>Name of the preset</source>
        <translation>Name der Vorlage</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CurveView</name>
    <message>
        <source>move knot</source>
        <translation>Knoten bewegen</translation>
    </message>
    <message numerus="yes">
        <source>move %n knots</source>
        <translation>
            <numerusform>%n Knoten bewegen</numerusform>
            <numerusform>%n Knoten bewegen</numerusform>
        </translation>
    </message>
    <message>
        <source>shape</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Curves</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>There is no curve on the clipboard</source>
        <translation>In der Zwischenablage ist keine Kurve</translation>
    </message>
    <message>
        <source>paste</source>
        <translation>einfügen</translation>
    </message>
    <message>
        <source>duplicate</source>
        <translation>verdoppeln</translation>
    </message>
    <message>
        <source>cut</source>
        <translation>ausschneiden</translation>
    </message>
    <message>
        <source>delete knot</source>
        <translation>Knoten löschen</translation>
    </message>
    <message numerus="yes">
        <source>delete %n knots</source>
        <translation>
            <numerusform>%n Knoten löschen</numerusform>
            <numerusform>%n Knoten löschen</numerusform>
        </translation>
    </message>
    <message>
        <source>reset knot</source>
        <translation>Knoten zurücksetzen</translation>
    </message>
    <message numerus="yes">
        <source>reset %n knots</source>
        <translation>
            <numerusform>%n Knoten zurücksetzen</numerusform>
            <numerusform>%n Knoten zurücksetzen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n knots at most</source>
        <translation>
            <numerusform>höchstens %n Knoten</numerusform>
            <numerusform>höchstens %n Knoten</numerusform>
        </translation>
    </message>
    <message>
        <source>add knot</source>
        <translation>Knoten hinzufügen</translation>
    </message>
    <message>
        <source>reset curve</source>
        <translation>Kurve zurücksetzen</translation>
    </message>
    <message>
        <source>Delete Knots</source>
        <translation>Knoten löschen</translation>
    </message>
    <message>
        <source>Delete Knot</source>
        <translation>Knoten löschen</translation>
    </message>
    <message>
        <source>Reset Knots</source>
        <translation>Knoten zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Knot</source>
        <translation>Knoten zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Curve</source>
        <translation>Kurve zurücksetzen</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Snap</source>
        <translation>Einrasten</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Rahmen</translation>
    </message>
    <message>
        <source>Show Selection</source>
        <translation>Auswahl zeigen</translation>
    </message>
    <message>
        <source>Show All</source>
        <translation>Alles zeigen</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Constant</source>
        <translation>Konstant</translation>
    </message>
    <message>
        <source>Linear</source>
        <translation>Linear</translation>
    </message>
    <message>
        <source>Smooth</source>
        <translation>Glatt</translation>
    </message>
    <message>
        <source>Monotone</source>
        <translation>Monoton</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Natürlich</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>Frei</translation>
    </message>
    <message>
        <source>slope</source>
        <translation>Steigung</translation>
    </message>
    <message>
        <source>scale</source>
        <translation>skalieren</translation>
    </message>
    <message>
        <source>playhead</source>
        <translation>Abspielposition</translation>
    </message>
    <message>
        <source>line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>knot</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>neighbour</source>
        <translation>Nachbar</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>Grenze</translation>
    </message>
    <message>
        <source>identity</source>
        <translation>Identität</translation>
    </message>
    <message>
        <source>chord</source>
        <translation>Sehne</translation>
    </message>
    <message>
        <source>x %1  y %2</source>
        <translation>x %1  y %2</translation>
    </message>
    <message>
        <source>Knot %1 of %2</source>
        <translation>Knoten %1 von %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message numerus="yes">
        <source>%n knots selected</source>
        <translation>
            <numerusform>%n Knoten ausgewählt</numerusform>
            <numerusform>%n Knoten ausgewählt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n knots</source>
        <translation>
            <numerusform>%n Knoten</numerusform>
            <numerusform>%n Knoten</numerusform>
        </translation>
    </message>
    <message>
        <source>The slope follows from the knots</source>
        <translation>Die Steigung folgt aus den Knoten</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::CurvesModel</name>
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
        <source>Master</source>
        <translation>Master</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::Disclosure</name>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::Dock</name>
    <message>
        <source>Panel</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Split Vertical</source>
        <translation>Übereinander teilen</translation>
    </message>
    <message>
        <source>Split Horizontal</source>
        <translation>Nebeneinander teilen</translation>
    </message>
    <message>
        <source>Float Pane</source>
        <translation>Bereich ablösen</translation>
    </message>
    <message>
        <source>Close Pane</source>
        <translation>Bereich schließen</translation>
    </message>
    <message>
        <source>Float Tab</source>
        <translation>Reiter ablösen</translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation>Reiter schließen</translation>
    </message>
    <message>
        <source>Solo Tab</source>
        <translation>Andere Reiter schließen</translation>
    </message>
    <message>
        <source>Show Tabs</source>
        <translation>Reiter anzeigen</translation>
    </message>
    <message>
        <source>Float the current tab</source>
        <translation>Aktuellen Reiter ablösen</translation>
    </message>
    <message>
        <source>Close the current tab</source>
        <translation>Aktuellen Reiter schließen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::DockArrangeMenu</name>
    <message>
        <source>Empty Pane</source>
        <translation>Leerer Bereich</translation>
    </message>
    <message>
        <source>Move Tab</source>
        <translation>Reiter verschieben</translation>
    </message>
    <message>
        <source>Left in Its Pane</source>
        <translation>Im Bereich nach links</translation>
    </message>
    <message>
        <source>Right in Its Pane</source>
        <translation>Im Bereich nach rechts</translation>
    </message>
    <message>
        <source>To a New Pane</source>
        <translation>In einen neuen Bereich</translation>
    </message>
    <message>
        <source>As Tab</source>
        <translation>Als Reiter</translation>
    </message>
    <message>
        <source>On the Left</source>
        <translation>Links daneben</translation>
    </message>
    <message>
        <source>On the Right</source>
        <translation>Rechts daneben</translation>
    </message>
    <message>
        <source>Above</source>
        <translation>Darüber</translation>
    </message>
    <message>
        <source>Below</source>
        <translation>Darunter</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::DockMainWindow</name>
    <message>
        <source>The file is not a Kestrel panel layout version 1.0 file.</source>
        <translation>Die Datei ist keine Kestrel-Anordnung der Version 1.0.</translation>
    </message>
    <message>
        <source>The layout has too many elements.</source>
        <translation>Die Anordnung hat zu viele Elemente.</translation>
    </message>
    <message>
        <source>The layout has too many nested splitters.</source>
        <translation>Die Anordnung hat zu viele ineinander liegende Teiler.</translation>
    </message>
    <message>
        <source>Next Pane</source>
        <translation>Nächster Bereich</translation>
    </message>
    <message>
        <source>Previous Pane</source>
        <translation>Voriger Bereich</translation>
    </message>
    <message>
        <source>Next Tab</source>
        <translation>Nächster Reiter</translation>
    </message>
    <message>
        <source>Previous Tab</source>
        <translation>Voriger Reiter</translation>
    </message>
    <message>
        <source>Parse error at line %2, column %3:
%4</source>
        <translation>Fehler in Zeile %2, Spalte %3:
%4</translation>
    </message>
    <message>
        <source>Dock Layout</source>
        <translation>Anordnung</translation>
    </message>
    <message>
        <source>The layout has no window.</source>
        <translation>Die Anordnung hat kein Fenster.</translation>
    </message>
    <message>
        <source>Another layout is being restored.</source>
        <translation>Eine andere Anordnung wird gerade hergestellt.</translation>
    </message>
    <message>
        <source>%1 (line %2, column %3)</source>
        <translation>%1 (Zeile %2, Spalte %3)</translation>
    </message>
    <message>
        <source>There is no device that is open for reading.</source>
        <translation>Es gibt kein Gerät, das zum Lesen geöffnet ist.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::DoubleSpinBox</name>
    <message>
        <source>Copy Value</source>
        <translation>Wert kopieren</translation>
    </message>
    <message>
        <source>Paste Value</source>
        <translation>Wert einfügen</translation>
    </message>
    <message>
        <source>Reset to Default</source>
        <translation>Auf Vorgabe zurücksetzen</translation>
    </message>
    <message>
        <source>Negate</source>
        <translation>Vorzeichen umkehren</translation>
    </message>
    <message>
        <source>Step Up</source>
        <translation>Schritt aufwärts</translation>
    </message>
    <message>
        <source>Step Down</source>
        <translation>Schritt abwärts</translation>
    </message>
    <message>
        <source>Show in</source>
        <translation>Anzeigen in</translation>
    </message>
    <message>
        <source>%1 (character %2)</source>
        <translation>%1 (Zeichen %2)</translation>
    </message>
    <message>
        <source>A number is missing</source>
        <translation>Eine Zahl fehlt</translation>
    </message>
    <message>
        <source>This does not belong here</source>
        <translation>Das gehört nicht hierher</translation>
    </message>
    <message>
        <source>A parenthesis is not closed</source>
        <translation>Eine Klammer ist nicht geschlossen</translation>
    </message>
    <message>
        <source>Unknown name</source>
        <translation>Unbekannter Name</translation>
    </message>
    <message>
        <source>Unknown unit</source>
        <translation>Unbekannte Einheit</translation>
    </message>
    <message>
        <source>A unit in the divisor</source>
        <translation>Eine Einheit im Nenner</translation>
    </message>
    <message>
        <source>No unit can stand here</source>
        <translation>Hier kann keine Einheit stehen</translation>
    </message>
    <message>
        <source>These units do not go together</source>
        <translation>Diese Einheiten passen nicht zusammen</translation>
    </message>
    <message>
        <source>This function takes one number</source>
        <translation>Diese Funktion nimmt eine Zahl</translation>
    </message>
    <message>
        <source>Digit groups are not read</source>
        <translation>Zifferngruppen werden nicht gelesen</translation>
    </message>
    <message>
        <source>The text is too long</source>
        <translation>Der Text ist zu lang</translation>
    </message>
    <message>
        <source>Too many parentheses</source>
        <translation>Zu viele Klammern</translation>
    </message>
    <message>
        <source>The result is not a number</source>
        <translation>Das Ergebnis ist keine Zahl</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::EventGraph</name>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Spur</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>Min.</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max.</translation>
    </message>
    <message>
        <source>50 %</source>
        <translation>50 %</translation>
    </message>
    <message>
        <source>95 %</source>
        <translation>95 %</translation>
    </message>
    <message>
        <source>99 %</source>
        <translation>99 %</translation>
    </message>
    <message>
        <source>Single shot</source>
        <translation>Einzelaufnahme</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>    Capture Mode: </source>
        <translation>    Aufnahmeart: </translation>
    </message>
    <message>
        <source>Forwards</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Rückschau</translation>
    </message>
    <message>
        <source>    Capture Duration/s: </source>
        <translation>    Aufnahmedauer/s: </translation>
    </message>
    <message>
        <source>Hide Empty Tracks</source>
        <translation>Leere Spuren ausblenden</translation>
    </message>
    <message>
        <source>    Event hit test mode: </source>
        <translation>    Treffer: </translation>
    </message>
    <message>
        <source>Direct hit only</source>
        <translation>Nur genau</translation>
    </message>
    <message>
        <source>Allow next</source>
        <translation>Auch nächstes</translation>
    </message>
    <message>
        <source>The mode to use when doing cursor hit tests against events to
determine what pop-up data to display.

Direct hit only: Require a direct hit on an event.

Allow next: If there&apos;s no direct hit, use the next event on
            the current hit track. This mode is useful if there
            are very short events, which would be difficult to
            hit directly unless extreme zoom settings are used.</source>
        <translation>Welches Ereignis der Text zeigt,
der beim Zeigen auf eine Spur erscheint.

Nur genau: Das Ereignis muss unter dem Zeiger liegen.

Auch nächstes: Liegt dort keines, gilt das nächste der Spur.
            Das hilft bei sehr kurzen Ereignissen, die sonst
            nur bei starker Vergrößerung zu treffen wären.</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Laden</translation>
    </message>
    <message>
        <source>Include user data</source>
        <translation>Mit Zusatzdaten</translation>
    </message>
    <message>
        <source>Include user data (rather than just event start/stop times).</source>
        <translation>Auch die Zusatzdaten speichern (nicht nur Anfang und Ende der Ereignisse).</translation>
    </message>
    <message>
        <source>Skip duplicates</source>
        <translation>Ohne Dubletten</translation>
    </message>
    <message>
        <source>Skip duplicated user data in adjacent events.
This doesn&apos;t look at the actual data values but just whether the same
user data object is referenced by adjacent events. Typically this means
skipping user data for a stop event if it points to the same user data
object as the preceding start event.</source>
        <translation>Zusatzdaten auslassen, die das Ereignis davor schon hat.
Verglichen werden nicht die Werte, sondern ob beide Ereignisse
auf dieselben Daten verweisen. So fehlen sie meist am Ende
einer Tätigkeit, deren Anfang sie schon trägt.</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom in (+)</source>
        <translation>Vergrößern (+)</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Zoom out (-)</source>
        <translation>Verkleinern (-)</translation>
    </message>
    <message>
        <source>Zoom to fit</source>
        <translation>Alles zeigen</translation>
    </message>
    <message>
        <source>Show the whole capture (F)</source>
        <translation>Die ganze Aufnahme zeigen (F)</translation>
    </message>
    <message>
        <source>Zoom to selection</source>
        <translation>Auswahl zeigen</translation>
    </message>
    <message>
        <source>Show the selected time (Z). Drag to select.</source>
        <translation>Die gewählte Zeit zeigen (Z). Zum Wählen ziehen.</translation>
    </message>
    <message>
        <source>Find a track or an event&apos;s text</source>
        <translation>Spur oder Ereignis suchen</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Voriges</translation>
    </message>
    <message>
        <source>Find the previous one (Shift+F3)</source>
        <translation>Voriges suchen (Umschalt+F3)</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Nächstes</translation>
    </message>
    <message>
        <source>Find the next one (F3)</source>
        <translation>Nächstes suchen (F3)</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <source>Show the distribution of durations and values of each track</source>
        <translation>Die Verteilung der Dauern und Werte jeder Spur zeigen</translation>
    </message>
    <message>
        <source>Export trace...</source>
        <translation>Exportieren...</translation>
    </message>
    <message>
        <source>Write the capture for trace viewers (Chrome trace, JSON)</source>
        <translation>Die Aufnahme für Trace-Betrachter schreiben (Chrome-Trace, JSON)</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>bytes/s</source>
        <translation>Byte/s</translation>
    </message>
    <message>
        <source>Save events file</source>
        <translation>Ereignisse speichern</translation>
    </message>
    <message>
        <source>XML (*.xml);;All files (*.*)</source>
        <translation>XML (*.xml);;Alle Dateien (*.*)</translation>
    </message>
    <message>
        <source>Save result</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <source>Event data saved to &apos;%1&apos;</source>
        <translation>Die Ereignisse sind in „%1“ gespeichert</translation>
    </message>
    <message>
        <source>Failed to open file &apos;%1&apos; for writing.</source>
        <translation>Die Datei „%1“ lässt sich nicht schreiben.</translation>
    </message>
    <message>
        <source>Load events file</source>
        <translation>Ereignisse laden</translation>
    </message>
    <message>
        <source>Export trace</source>
        <translation>Trace exportieren</translation>
    </message>
    <message>
        <source>Chrome trace (*.json)</source>
        <translation>Chrome-Trace (*.json)</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::EventGraphView</name>
    <message>
        <source>Open result</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Error opening &apos;%1&apos;:

%2</source>
        <translation>Fehler beim Öffnen von „%1“:

%2</translation>
    </message>
    <message>
        <source>Recording...</source>
        <translation>Aufnahme läuft...</translation>
    </message>
    <message>
        <source>Time=%1, Value=%2</source>
        <translation>Zeit=%1, Wert=%2</translation>
    </message>
    <message>
        <source>Time=%1</source>
        <translation>Zeit=%1</translation>
    </message>
    <message>
        <source>Start=%1, Duration=%2</source>
        <translation>Beginn=%1, Dauer=%2</translation>
    </message>
    <message>
        <source>, Mean Duration=%1</source>
        <translation>, Mittlere Dauer=%1</translation>
    </message>
    <message>
        <source>, Mean Value=%1</source>
        <translation>, Mittlerer Wert=%1</translation>
    </message>
    <message>
        <source>, Mean Bandwidth=%1</source>
        <translation>, Mittlere Bandbreite=%1</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::FavoritesFile</name>
    <message>
        <source>The favourites could not be read past line %1; a copy was kept as %2.</source>
        <translation>Die Favoriten ließen sich nach Zeile %1 nicht weiter lesen; eine Kopie liegt als %2 bereit.</translation>
    </message>
    <message>
        <source>The favourites cannot be read: %1</source>
        <translation>Die Favoriten lassen sich nicht lesen: %1</translation>
    </message>
    <message>
        <source>The favourites cannot be saved: %1</source>
        <translation>Die Favoriten lassen sich nicht speichern: %1</translation>
    </message>
    <message>
        <source>The favourites are not saved yet: another program is saving them.</source>
        <translation>Die Favoriten sind noch nicht gespeichert: Ein anderes Programm speichert sie gerade.</translation>
    </message>
    <message>
        <source>The favourites are damaged and cannot be copied, so they are not replaced.</source>
        <translation>Die Favoriten sind beschädigt und lassen sich nicht kopieren; deshalb werden sie nicht ersetzt.</translation>
    </message>
    <message>
        <source>The favourites could not be read past line %1.</source>
        <translation>Die Favoriten ließen sich nach Zeile %1 nicht weiter lesen.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::FavoritesModel</name>
    <message>
        <source>Home</source>
        <translation>Persönlicher Ordner</translation>
    </message>
    <message>
        <source>File System</source>
        <translation>Dateisystem</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>Zuletzt benutzt</translation>
    </message>
    <message>
        <source>Bookmarks of the Desktop</source>
        <translation>Lesezeichen des Desktops</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>%1, cannot be reached</source>
        <translation>%1, nicht erreichbar</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::FavoritesView</name>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Removed %1</source>
        <translation>%1 entfernt</translation>
    </message>
    <message>
        <source>New Group</source>
        <translation>Neue Gruppe</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Brings it back (Ctrl+Z)</source>
        <translation>Holt es zurück (Strg+Z)</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open in New Window</source>
        <translation>In neuem Fenster öffnen</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu den Favoriten</translation>
    </message>
    <message>
        <source>Clear Recent</source>
        <translation>Zuletzt benutzte löschen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Import from the Desktop</source>
        <translation>Vom Desktop übernehmen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::FileBrowser</name>
    <message numerus="yes">
        <source>Reading stopped after %Ln entries: %1</source>
        <translation>
            <numerusform>Das Lesen endete nach %Ln Eintrag: %1</numerusform>
            <numerusform>Das Lesen endete nach %Ln Einträgen: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>1 folder</source>
        <translation>1 Ordner</translation>
    </message>
    <message numerus="yes">
        <source>%Ln folders</source>
        <translation>
            <numerusform>%Ln Ordner</numerusform>
            <numerusform>%Ln Ordner</numerusform>
        </translation>
    </message>
    <message>
        <source>1 sequence</source>
        <translation>1 Sequenz</translation>
    </message>
    <message numerus="yes">
        <source>%Ln sequences</source>
        <translation>
            <numerusform>%Ln Sequenz</numerusform>
            <numerusform>%Ln Sequenzen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 Datei</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln selected</source>
        <translation>
            <numerusform>%Ln ausgewählt</numerusform>
            <numerusform>%Ln ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message numerus="yes">
        <source>Reading: %Ln entries</source>
        <translation>
            <numerusform>Lesen: %Ln Eintrag</numerusform>
            <numerusform>Lesen: %Ln Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Waiting for the server of this folder…</source>
        <translation>Warten auf den Server dieses Ordners …</translation>
    </message>
    <message>
        <source>This folder does not exist any more.</source>
        <translation>Diesen Ordner gibt es nicht mehr.</translation>
    </message>
    <message numerus="yes">
        <source>Reading was stopped after %Ln entries.</source>
        <translation>
            <numerusform>Das Lesen wurde nach %Ln Eintrag angehalten.</numerusform>
            <numerusform>Das Lesen wurde nach %Ln Einträgen angehalten.</numerusform>
        </translation>
    </message>
    <message>
        <source>This folder is empty.</source>
        <translation>Dieser Ordner ist leer.</translation>
    </message>
    <message>
        <source>Everything in this folder is hidden.</source>
        <translation>Alles in diesem Ordner ist verborgen.</translation>
    </message>
    <message>
        <source>Nothing of the kind that is looked for is in this folder.</source>
        <translation>In diesem Ordner ist nichts von der gesuchten Art.</translation>
    </message>
    <message>
        <source>No item matches “%1”.</source>
        <translation>Nichts passt zu „%1“.</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Kind of files</source>
        <translation>Art der Dateien</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Aufwärts</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Persönlicher Ordner</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Neu lesen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Edit Path</source>
        <translation>Pfad bearbeiten</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Show Hidden Files</source>
        <translation>Verborgene Dateien zeigen</translation>
    </message>
    <message>
        <source>Show Frames One by One</source>
        <translation>Bilder einzeln zeigen</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Compact</source>
        <translation>Kompakt</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>Vorschaubilder</translation>
    </message>
    <message>
        <source>Words of names, or the number of a frame</source>
        <translation>Wörter aus Namen oder die Nummer eines Bildes</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Noch einmal</translation>
    </message>
    <message>
        <source>Stop Waiting</source>
        <translation>Nicht mehr warten</translation>
    </message>
    <message>
        <source>Go to %1</source>
        <translation>Zu %1</translation>
    </message>
    <message>
        <source>Clear Filter</source>
        <translation>Filter löschen</translation>
    </message>
    <message>
        <source>%1 missing</source>
        <translation>%1 fehlen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>New Folder %1</source>
        <translation>Neuer Ordner %1</translation>
    </message>
    <message>
        <source>A name cannot be “%1”.</source>
        <translation>Ein Name kann nicht „%1“ sein.</translation>
    </message>
    <message>
        <source>Renaming: %1 of %2</source>
        <translation>Umbenennen: %1 von %2</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu den Favoriten</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Go to Favourite %1</source>
        <translation>Zu Favorit %1</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Remove from Favourites</source>
        <translation>Aus den Favoriten entfernen</translation>
    </message>
    <message>
        <source>Reading the folder</source>
        <translation>Der Ordner wird gelesen</translation>
    </message>
    <message>
        <source>Folder read, 1 item</source>
        <translation>Ordner gelesen, 1 Eintrag</translation>
    </message>
    <message numerus="yes">
        <source>Folder read, %Ln items</source>
        <translation>
            <numerusform>Ordner gelesen, %Ln Eintrag</numerusform>
            <numerusform>Ordner gelesen, %Ln Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>Wird gelesen …</translation>
    </message>
    <message>
        <source>Reading was stopped.</source>
        <translation>Das Lesen wurde angehalten.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::FileListModel</name>
    <message>
        <source>This file does not exist any more.</source>
        <translation>Diese Datei gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>You have no permission to ask about this file.</source>
        <translation>Ihnen fehlt die Berechtigung, nach dieser Datei zu fragen.</translation>
    </message>
    <message>
        <source>This file cannot be asked about.</source>
        <translation>Nach dieser Datei lässt sich nicht fragen.</translation>
    </message>
    <message>
        <source>This link leads nowhere.</source>
        <translation>Diese Verknüpfung führt ins Leere.</translation>
    </message>
    <message>
        <source>There are %1.</source>
        <translation>Vorhanden sind %1.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::HistogramScope</name>
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
        <source>Alpha</source>
        <translation>Alpha</translation>
    </message>
    <message>
        <source>Luma</source>
        <translation>Luma</translation>
    </message>
    <message>
        <source>Largest</source>
        <translation>Größter</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Histogram</source>
        <translation>Histogramm</translation>
    </message>
    <message>
        <source>%1°</source>
        <translation>%1°</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>%1 %2: %3</source>
        <translation>%1 %2: %3</translation>
    </message>
    <message>
        <source>Without a hue: %1</source>
        <translation>Ohne Farbton: %1</translation>
    </message>
    <message>
        <source>No number: %1</source>
        <translation>Keine Zahl: %1</translation>
    </message>
    <message>
        <source>Below %1: %2</source>
        <translation>Unter %1: %2</translation>
    </message>
    <message>
        <source>Above %1: %2</source>
        <translation>Über %1: %2</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ImageStatisticsPanel</name>
    <message>
        <source>Channel</source>
        <translation>Kanal</translation>
    </message>
    <message>
        <source>Image statistics</source>
        <translation>Bildstatistik</translation>
    </message>
    <message>
        <source>Transform failed: %1</source>
        <translation>Umwandlung fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>No pixels in the region</source>
        <translation>Keine Bildpunkte im Bereich</translation>
    </message>
    <message>
        <source>No picture</source>
        <translation>Kein Bild</translation>
    </message>
    <message>
        <source>%1 × %2 at %3, %4: %5 pixels</source>
        <translation>%1 × %2 bei %3, %4: %5 Bildpunkte</translation>
    </message>
    <message>
        <source>transparent %1</source>
        <translation>durchsichtig %1</translation>
    </message>
    <message>
        <source>proxy 1/%1</source>
        <translation>Proxy 1/%1</translation>
    </message>
    <message>
        <source>1/%1 of rows</source>
        <translation>1/%1 der Zeilen</translation>
    </message>
    <message>
        <source>outside 0 to 1: %1 %</source>
        <translation>außerhalb 0 bis 1: %1 %</translation>
    </message>
    <message>
        <source>EBU R 103: %1 % outside, met</source>
        <translation>EBU R 103: %1 % außerhalb, eingehalten</translation>
    </message>
    <message>
        <source>EBU R 103: %1 % outside, not met</source>
        <translation>EBU R 103: %1 % außerhalb, nicht eingehalten</translation>
    </message>
    <message>
        <source>MaxCLL %1 nits, frame average %2 nits, 99.995 %: %3 nits</source>
        <translation>MaxCLL %1 Nits, Bildmittel %2 Nits, 99,995 %: %3 Nits</translation>
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
        <source>Alpha</source>
        <translation>Alpha</translation>
    </message>
    <message>
        <source>Luma</source>
        <translation>Luma</translation>
    </message>
    <message>
        <source>Largest</source>
        <translation>Größter</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>Min</translation>
    </message>
    <message>
        <source>Smallest finite value; a double click finds it</source>
        <translation>Kleinster endlicher Wert; ein Doppelklick findet ihn</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>Largest finite value; a double click finds it</source>
        <translation>Größter endlicher Wert; ein Doppelklick findet ihn</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Mean of the finite values</source>
        <translation>Mittel der endlichen Werte</translation>
    </message>
    <message>
        <source>Deviation</source>
        <translation>Abweichung</translation>
    </message>
    <message>
        <source>Standard deviation of the finite values</source>
        <translation>Standardabweichung der endlichen Werte</translation>
    </message>
    <message>
        <source>1 %</source>
        <translation>1 %</translation>
    </message>
    <message>
        <source>The value that 1 % do not exceed</source>
        <translation>Der Wert, den 1 % nicht überschreiten</translation>
    </message>
    <message>
        <source>Median</source>
        <translation>Median</translation>
    </message>
    <message>
        <source>The value that half do not exceed</source>
        <translation>Der Wert, den die Hälfte nicht überschreitet</translation>
    </message>
    <message>
        <source>99 %</source>
        <translation>99 %</translation>
    </message>
    <message>
        <source>The value that 99 % do not exceed</source>
        <translation>Der Wert, den 99 % nicht überschreiten</translation>
    </message>
    <message>
        <source>&lt; 0</source>
        <translation>&lt; 0</translation>
    </message>
    <message>
        <source>Values below 0</source>
        <translation>Werte unter 0</translation>
    </message>
    <message>
        <source>&gt; 1</source>
        <translation>&gt; 1</translation>
    </message>
    <message>
        <source>Values above 1</source>
        <translation>Werte über 1</translation>
    </message>
    <message>
        <source>NaN</source>
        <translation>NaN</translation>
    </message>
    <message>
        <source>Values that are no number</source>
        <translation>Werte, die keine Zahl sind</translation>
    </message>
    <message>
        <source>+inf</source>
        <translation>+∞</translation>
    </message>
    <message>
        <source>Positive infinities</source>
        <translation>Positiv unendliche</translation>
    </message>
    <message>
        <source>-inf</source>
        <translation>−∞</translation>
    </message>
    <message>
        <source>Negative infinities</source>
        <translation>Negativ unendliche</translation>
    </message>
    <message>
        <source>Distinct</source>
        <translation>Verschiedene</translation>
    </message>
    <message>
        <source>Values that differ</source>
        <translation>Werte, die sich unterscheiden</translation>
    </message>
    <message>
        <source>Legal %</source>
        <translation>Zulässig %</translation>
    </message>
    <message>
        <source>Share of the values within 0 to 1</source>
        <translation>Anteil der Werte von 0 bis 1</translation>
    </message>
    <message>
        <source>R 103 %</source>
        <translation>R 103 %</translation>
    </message>
    <message>
        <source>Share of the values within the preferred range of EBU R 103</source>
        <translation>Anteil der Werte im bevorzugten Bereich von EBU R 103</translation>
    </message>
    <message>
        <source>%1, %2: %3</source>
        <translation>%1, %2: %3</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::JogWheel</name>
    <message>
        <source>Jog wheel</source>
        <translation>Jograd</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::MultiStackUndoGroup</name>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::MultiStackUndoModel</name>
    <message>
        <source>&lt;empty&gt;</source>
        <translation>&lt;leer&gt;</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::NamedWorkspaces</name>
    <message>
        <source>There is no workspace.</source>
        <translation>Es gibt keine Arbeitsfläche.</translation>
    </message>
    <message>
        <source>There is no folder for workspaces.</source>
        <translation>Es gibt keinen Ordner für Arbeitsflächen.</translation>
    </message>
    <message>
        <source>There is no workspace &quot;%1&quot;.</source>
        <translation>Es gibt keine Arbeitsfläche „%1“.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be made.</source>
        <translation>Der Ordner „%1“ lässt sich nicht anlegen.</translation>
    </message>
    <message>
        <source>A workspace needs a name.</source>
        <translation>Eine Arbeitsfläche braucht einen Namen.</translation>
    </message>
    <message>
        <source>The name has more than %1 characters.</source>
        <translation>Der Name hat mehr als %1 Zeichen.</translation>
    </message>
    <message>
        <source>A name cannot have one of the characters / \ : * ? &quot; &lt; &gt; |</source>
        <translation>Ein Name kann keines der Zeichen / \ : * ? &quot; &lt; &gt; | haben</translation>
    </message>
    <message>
        <source>A name cannot begin or end with a dot.</source>
        <translation>Ein Name kann nicht mit einem Punkt beginnen oder enden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a name that some systems keep for themselves.</source>
        <translation>„%1“ ist ein Name, den manche Systeme für sich behalten.</translation>
    </message>
    <message>
        <source>There is a workspace &quot;%1&quot; already.</source>
        <translation>Es gibt schon eine Arbeitsfläche „%1“.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::NamedWorkspacesMenu</name>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Save &quot;%1&quot;</source>
        <translation>„%1“ &amp;speichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;als...</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Load Workspace</source>
        <translation>Arbeitsfläche laden</translation>
    </message>
    <message>
        <source>Save Workspace</source>
        <translation>Arbeitsfläche speichern</translation>
    </message>
    <message>
        <source>Replace the workspace &quot;%1&quot;?</source>
        <translation>Die Arbeitsfläche „%1“ ersetzen?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Rename Workspace</source>
        <translation>Arbeitsfläche umbenennen</translation>
    </message>
    <message>
        <source>Delete the workspace &quot;%1&quot;?</source>
        <translation>Die Arbeitsfläche „%1“ löschen?</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete Workspace</source>
        <translation>Arbeitsfläche löschen</translation>
    </message>
    <message>
        <source>Works&amp;paces</source>
        <translation>Arbeits&amp;flächen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::NoticeLine</name>
    <message>
        <source>Next &amp;Version</source>
        <translation>Nächste &amp;Version</translation>
    </message>
    <message>
        <source>Give the name the next version that is free (Ctrl+Shift+Plus)</source>
        <translation>Dem Namen die nächste freie Version geben (Strg+Umschalt+Plus)</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::PathBar</name>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>No path has a character of this kind.</source>
        <translation>In keinem Pfad steht ein solches Zeichen.</translation>
    </message>
    <message>
        <source>This is on another computer.</source>
        <translation>Das liegt auf einem anderen Rechner.</translation>
    </message>
    <message>
        <source>Nobody knows where your home folder is.</source>
        <translation>Wo Ihr persönlicher Ordner liegt, ist nicht bekannt.</translation>
    </message>
    <message>
        <source>This folder does not exist.</source>
        <translation>Diesen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>There is no folder or file of this name.</source>
        <translation>Es gibt weder Ordner noch Datei dieses Namens.</translation>
    </message>
    <message>
        <source>The server of this folder does not answer.</source>
        <translation>Der Server dieses Ordners antwortet nicht.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::PathRemapModel</name>
    <message>
        <source>The file is too large.</source>
        <translation>Die Datei ist zu groß.</translation>
    </message>
    <message>
        <source>Line %1: %2.</source>
        <translation>Zeile %1: %2.</translation>
    </message>
    <message>
        <source>The file has no path rules of a version that is known.</source>
        <translation>Die Datei hat keine Pfadregeln einer bekannten Version.</translation>
    </message>
    <message>
        <source>The file has too many rules.</source>
        <translation>Die Datei hat zu viele Regeln.</translation>
    </message>
    <message>
        <source>Rule %1: %2 is missing.</source>
        <translation>Regel %1: %2 fehlt.</translation>
    </message>
    <message>
        <source>Rule %1 has a path that cannot be written as text.</source>
        <translation>Regel %1 hat einen Pfad, der sich nicht als Text schreiben lässt.</translation>
    </message>
    <message>
        <source>Use Rule</source>
        <translation>Regel verwenden</translation>
    </message>
    <message>
        <source>Do Not Use Rule</source>
        <translation>Regel nicht verwenden</translation>
    </message>
    <message>
        <source>On</source>
        <translation>An</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Nach</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Remove Rule</source>
        <translation>Regel entfernen</translation>
    </message>
    <message>
        <source>Remove Rules</source>
        <translation>Regeln entfernen</translation>
    </message>
    <message>
        <source>Nothing to replace is given.</source>
        <translation>Es ist nichts angegeben, das zu ersetzen wäre.</translation>
    </message>
    <message>
        <source>The path to replace must begin at the root or with a drive.</source>
        <translation>Der zu ersetzende Pfad muss bei der Wurzel oder mit einem Laufwerk beginnen.</translation>
    </message>
    <message>
        <source>Nothing to replace it by is given.</source>
        <translation>Es ist nichts angegeben, wodurch er zu ersetzen wäre.</translation>
    </message>
    <message>
        <source>Never used: rule %1 comes first.</source>
        <translation>Nie verwendet: Regel %1 kommt zuvor.</translation>
    </message>
    <message>
        <source>Type both paths here to add a rule</source>
        <translation>Beide Pfade hier eingeben, um eine Regel hinzuzufügen</translation>
    </message>
    <message>
        <source>on</source>
        <translation>an</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>new rule</source>
        <translation>neue Regel</translation>
    </message>
    <message>
        <source>Change Rule</source>
        <translation>Regel ändern</translation>
    </message>
    <message>
        <source>Add Rule</source>
        <translation>Regel hinzufügen</translation>
    </message>
    <message>
        <source>New rule…</source>
        <translation>Neue Regel …</translation>
    </message>
    <message>
        <source>Windows path</source>
        <translation>Windows-Pfad</translation>
    </message>
    <message>
        <source>The path to replace must not have “..” in it.</source>
        <translation>Im zu ersetzenden Pfad darf kein „..“ stehen.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::PathRemapTable</name>
    <message>
        <source>Too many folders do not answer.</source>
        <translation>Zu viele Ordner antworten nicht.</translation>
    </message>
    <message>
        <source>Remove Rule</source>
        <translation>Regel entfernen</translation>
    </message>
    <message>
        <source>Remove Rules</source>
        <translation>Regeln entfernen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Begins a new rule</source>
        <translation>Beginnt eine neue Regel</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Removes the selected rules (Del)</source>
        <translation>Entfernt die gewählten Regeln (Entf)</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Aufwärts</translation>
    </message>
    <message>
        <source>Earlier rules come first (Alt+Up)</source>
        <translation>Frühere Regeln gelten zuerst (Alt+Auf)</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Abwärts</translation>
    </message>
    <message>
        <source>Later rules come last (Alt+Down)</source>
        <translation>Spätere Regeln gelten zuletzt (Alt+Ab)</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>Importieren …</translation>
    </message>
    <message>
        <source>Adds the rules of a file</source>
        <translation>Fügt die Regeln einer Datei hinzu</translation>
    </message>
    <message>
        <source>Export…</source>
        <translation>Exportieren …</translation>
    </message>
    <message>
        <source>Writes the rules to a file</source>
        <translation>Schreibt die Regeln in eine Datei</translation>
    </message>
    <message>
        <source>&amp;Try a path:</source>
        <translation>Einen Pfad &amp;prüfen:</translation>
    </message>
    <message>
        <source>Import Rules</source>
        <translation>Regeln importieren</translation>
    </message>
    <message>
        <source>Export Rules</source>
        <translation>Regeln exportieren</translation>
    </message>
    <message>
        <source>Path rules (*.json)</source>
        <translation>Pfadregeln (*.json)</translation>
    </message>
    <message>
        <source>No rule matches.</source>
        <translation>Keine Regel passt.</translation>
    </message>
    <message>
        <source>Move Rule</source>
        <translation>Regel verschieben</translation>
    </message>
    <message>
        <source>Move Rules</source>
        <translation>Regeln verschieben</translation>
    </message>
    <message>
        <source>Path rules</source>
        <translation>Pfadregeln</translation>
    </message>
    <message>
        <source>Paste Rules</source>
        <translation>Regeln einfügen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ProgressDialog</name>
    <message>
        <source>Cancel All</source>
        <translation>Alle abbrechen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Verbergen</translation>
    </message>
    <message>
        <source>The work goes on (Esc)</source>
        <translation>Die Arbeit läuft weiter (Esc)</translation>
    </message>
    <message numerus="yes">
        <source>%n tasks</source>
        <translation>
            <numerusform>%n Aufgabe</numerusform>
            <numerusform>%n Aufgaben</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 % - %2</source>
        <translation>%1 % - %2</translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>Shows the parts of this task</source>
        <translation>Zeigt die Teile dieser Aufgabe</translation>
    </message>
    <message>
        <source>Parts</source>
        <translation>Teile</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>Einzelheiten kopieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Still stopping: waiting for the current step.</source>
        <translation>Hält noch an: Warten auf den laufenden Schritt.</translation>
    </message>
    <message>
        <source>This cannot be stopped.</source>
        <translation>Das lässt sich nicht anhalten.</translation>
    </message>
    <message>
        <source>%1 percent, </source>
        <translation>%1 Prozent, </translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Cancelling…</source>
        <translation>Wird abgebrochen …</translation>
    </message>
    <message>
        <source>%1 so far</source>
        <translation>%1 bisher</translation>
    </message>
    <message>
        <source>%1, %2 so far</source>
        <translation>%1, bisher %2</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ProgressListModel</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Task</source>
        <translation>Aufgabe</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Übrig</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ProgressManager</name>
    <message>
        <source>No progress for %1</source>
        <translation>Kein Fortschritt seit %1</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ProgressStrip</name>
    <message>
        <source>Tasks</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>(+%1)</source>
        <translation>(+%1)</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::PromptComboBox</name>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ReplaceSheet</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Next &amp;Version</source>
        <translation>Nächste &amp;Version</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ScopeView</name>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Single pixels visible</source>
        <translation>Einzelne Bildpunkte sichtbar</translation>
    </message>
    <message>
        <source>Held result visible</source>
        <translation>Gehaltenes Ergebnis sichtbar</translation>
    </message>
    <message>
        <source>Let held result go</source>
        <translation>Gehaltenes Ergebnis loslassen</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Halten</translation>
    </message>
    <message>
        <source>Show everything</source>
        <translation>Alles zeigen</translation>
    </message>
    <message>
        <source>Percent</source>
        <translation>Prozent</translation>
    </message>
    <message>
        <source>IRE</source>
        <translation>IRE</translation>
    </message>
    <message>
        <source>8-bit codes</source>
        <translation>8-Bit-Codes</translation>
    </message>
    <message>
        <source>10-bit codes</source>
        <translation>10-Bit-Codes</translation>
    </message>
    <message>
        <source>12-bit codes</source>
        <translation>12-Bit-Codes</translation>
    </message>
    <message>
        <source>Millivolts</source>
        <translation>Millivolt</translation>
    </message>
    <message>
        <source>Nits, SDR</source>
        <translation>Nits, SDR</translation>
    </message>
    <message>
        <source>Nits, PQ</source>
        <translation>Nits, PQ</translation>
    </message>
    <message>
        <source>Nits, HLG</source>
        <translation>Nits, HLG</translation>
    </message>
    <message>
        <source>Stops</source>
        <translation>Blenden</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1 %2, %3</source>
        <translation>%1 %2, %3</translation>
    </message>
    <message>
        <source>No picture</source>
        <translation>Kein Bild</translation>
    </message>
    <message>
        <source>Transform failed: %1</source>
        <translation>Umwandlung fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>No pixels in the region</source>
        <translation>Keine Bildpunkte im Bereich</translation>
    </message>
    <message>
        <source>NaN %1</source>
        <translation>NaN %1</translation>
    </message>
    <message>
        <source>Proxy 1/%1</source>
        <translation>Proxy 1/%1</translation>
    </message>
    <message>
        <source>1/%1 of rows</source>
        <translation>1/%1 der Zeilen</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::SearchField</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message numerus="yes">
        <source>%n matches</source>
        <translation>
            <numerusform>%n Treffer</numerusform>
            <numerusform>%n Treffer</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Search options</source>
        <translation>Suchoptionen</translation>
    </message>
    <message>
        <source>Clear Recent Searches</source>
        <translation>Letzte Suchen löschen</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::SwatchGrid</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Swatches</source>
        <translation>Farbfelder</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Drop colours here</source>
        <translation>Farben hierher ziehen</translation>
    </message>
    <message>
        <source>&amp;Copy colour</source>
        <translation>Farbe &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste colour</source>
        <translation>Farbe &amp;einfügen</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>Ent&amp;fernen</translation>
    </message>
    <message>
        <source>Remove &amp;all…</source>
        <translation>&amp;Alle entfernen …</translation>
    </message>
    <message>
        <source>Remove all</source>
        <translation>Alle entfernen</translation>
    </message>
    <message numerus="yes">
        <source>Remove %n colour(s)? This can not be undone.</source>
        <translation>
            <numerusform>%n Farbe entfernen? Das lässt sich nicht rückgängig machen.</numerusform>
            <numerusform>%n Farben entfernen? Das lässt sich nicht rückgängig machen.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::SwatchModel</name>
    <message>
        <source>No colour could be read in line %1.</source>
        <translation>In Zeile %1 ließ sich keine Farbe lesen.</translation>
    </message>
    <message numerus="yes">
        <source>No colour could be read in line %1 and %n more.</source>
        <translation>
            <numerusform>In Zeile %1 und %n weiteren ließ sich keine Farbe lesen.</numerusform>
            <numerusform>In Zeile %1 und %n weiteren ließ sich keine Farbe lesen.</numerusform>
        </translation>
    </message>
    <message>
        <source>This is no file of swatches.</source>
        <translation>Das ist keine Datei mit Farbfeldern.</translation>
    </message>
    <message numerus="yes">
        <source>The file has more than %n colour(s).</source>
        <translation>
            <numerusform>Die Datei hat mehr als %n Farbe.</numerusform>
            <numerusform>Die Datei hat mehr als %n Farben.</numerusform>
        </translation>
    </message>
    <message>
        <source>Palettes have colours of the screen, which can not be brought back.</source>
        <translation>Paletten haben Farben des Bildschirms, die sich nicht zurückrechnen lassen.</translation>
    </message>
    <message>
        <source>The file is too large.</source>
        <translation>Die Datei ist zu groß.</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::TimeField</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::TimeFormatChooser</name>
    <message>
        <source>Set the time display format.</source>
        <translation>Stellt ein, wie Zeiten angezeigt werden.</translation>
    </message>
    <message>
        <source>Time display format</source>
        <translation>Zeitanzeige</translation>
    </message>
    <message>
        <source>TC (Timecode)</source>
        <translation>TC (Timecode)</translation>
    </message>
    <message>
        <source>AC (Absolute Time)</source>
        <translation>AC (Absolute Zeit)</translation>
    </message>
    <message>
        <source>EC (Edge Code)</source>
        <translation>EC (Randnummer)</translation>
    </message>
    <message>
        <source>CF (Clip Frames)</source>
        <translation>CF (Bilder des Clips)</translation>
    </message>
    <message>
        <source>TF (Timeline Frames)</source>
        <translation>TF (Bilder der Zeitleiste)</translation>
    </message>
    <message>
        <source>Timecode</source>
        <translation>Timecode</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Bilder</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::TimeRuler</name>
    <message>
        <source>Selected: %1</source>
        <translation>Gewählt: %1</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::TimeSlider</name>
    <message>
        <source>Timeline</source>
        <translation>Zeitleiste</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::TrackBall</name>
    <message>
        <source>Track ball</source>
        <translation>Farbkugel</translation>
    </message>
    <message>
        <source>Master</source>
        <translation>Master</translation>
    </message>
    <message>
        <source>Red %1, green %2, blue %3</source>
        <translation>Rot %1, Grün %2, Blau %3</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::TransportControlsWidget</name>
    <message>
        <source>Go to start. (Home)</source>
        <translation>Zum Anfang (Pos1)</translation>
    </message>
    <message>
        <source>Jump To Beginning</source>
        <translation>Zum Anfang</translation>
    </message>
    <message>
        <source>Jump Backwards</source>
        <translation>Zurückspringen</translation>
    </message>
    <message>
        <source>Go to previous frame. (Left)</source>
        <translation>Zum vorigen Bild (Links)</translation>
    </message>
    <message>
        <source>Frame Backwards</source>
        <translation>Ein Bild zurück</translation>
    </message>
    <message>
        <source>Play backwards/Stop. (J/K)</source>
        <translation>Rückwärts abspielen/Stopp (J/K)</translation>
    </message>
    <message>
        <source>Play Backwards</source>
        <translation>Rückwärts abspielen</translation>
    </message>
    <message>
        <source>The current frame</source>
        <translation>Das aktuelle Bild</translation>
    </message>
    <message>
        <source>Play forwards/Stop. (L/K)</source>
        <translation>Vorwärts abspielen/Stopp (L/K)</translation>
    </message>
    <message>
        <source>Play Forwards</source>
        <translation>Vorwärts abspielen</translation>
    </message>
    <message>
        <source>Go to next frame. (Right)</source>
        <translation>Zum nächsten Bild (Rechts)</translation>
    </message>
    <message>
        <source>Frame Forwards</source>
        <translation>Ein Bild vor</translation>
    </message>
    <message>
        <source>Jump Forwards</source>
        <translation>Vorspringen</translation>
    </message>
    <message>
        <source>Go to end. (End)</source>
        <translation>Zum Ende (Ende)</translation>
    </message>
    <message>
        <source>Jump To End</source>
        <translation>Zum Ende</translation>
    </message>
    <message>
        <source>Go to previous keyframe or edit, whichever is nearest. (Alt+Left)</source>
        <translation>Zum vorigen Keyframe oder Schnitt, je nachdem, was näher ist (Alt+Links)</translation>
    </message>
    <message>
        <source>Go to next keyframe or edit, whichever is nearest. (Alt+Right)</source>
        <translation>Zum nächsten Keyframe oder Schnitt, je nachdem, was näher ist (Alt+Rechts)</translation>
    </message>
    <message>
        <source>Go to previous keyframe. (Alt+Left or Ctrl+left for 1/2 way)</source>
        <translation>Zum vorigen Keyframe (Alt+Links, mit Strg+Links halben Wegs)</translation>
    </message>
    <message>
        <source>Go to next keyframe. (Alt+Right or Ctrl+Right for 1/2 way)</source>
        <translation>Zum nächsten Keyframe (Alt+Rechts, mit Strg+Rechts halben Wegs)</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::Vectorscope</name>
    <message>
        <source>Vectorscope</source>
        <translation>Vektorskop</translation>
    </message>
    <message>
        <source>Gain %1</source>
        <translation>Verstärkung %1</translation>
    </message>
    <message>
        <source>Logarithmic</source>
        <translation>Logarithmisch</translation>
    </message>
    <message>
        <source>Luma %1 to %2</source>
        <translation>Luma %1 bis %2</translation>
    </message>
    <message>
        <source>Cb %1, Cr %2</source>
        <translation>Cb %1, Cr %2</translation>
    </message>
    <message>
        <source>%1°, %2 %, %3</source>
        <translation>%1°, %2 %, %3</translation>
    </message>
    <message>
        <source>Matrix</source>
        <translation>Matrix</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::ViewerFrameSkipControl</name>
    <message>
        <source>Skip Backwards (Shift+Left)</source>
        <translation>Bilder zurück (Umschalt+Links)</translation>
    </message>
    <message>
        <source>Skip backwards</source>
        <translation>Bilder zurück</translation>
    </message>
    <message>
        <source>Skip Forwards (Shift+Right)</source>
        <translation>Bilder vor (Umschalt+Rechts)</translation>
    </message>
    <message>
        <source>Skip forwards</source>
        <translation>Bilder vor</translation>
    </message>
    <message>
        <source>The number of frames skipped by clicking Skip Forwards/Backwards</source>
        <translation>Um so viele Bilder geht es mit „Bilder vor“ und „Bilder zurück“</translation>
    </message>
    <message>
        <source>Frames to skip</source>
        <translation>Bilder je Sprung</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::WaveformScope</name>
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
        <source>Cb</source>
        <translation>Cb</translation>
    </message>
    <message>
        <source>Cr</source>
        <translation>Cr</translation>
    </message>
    <message>
        <source>Luma</source>
        <translation>Luma</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Waveform</source>
        <translation>Wellenform</translation>
    </message>
</context>
<context>
    <name>Kestrel::UI::XmlLimits</name>
    <message>
        <source>Elements are nested more than %1 deep</source>
        <translation>Die Elemente sind tiefer als %1 verschachtelt</translation>
    </message>
    <message>
        <source>A document type declaration is not allowed</source>
        <translation>Eine Dokumenttyp-Deklaration ist nicht erlaubt</translation>
    </message>
    <message>
        <source>An element has more than %1 attributes</source>
        <translation>Ein Element hat mehr als %1 Attribute</translation>
    </message>
    <message>
        <source>The file is larger than %1 GiB</source>
        <translation>Die Datei ist größer als %1 GiB</translation>
    </message>
    <message>
        <source>The file is larger than %1 MiB</source>
        <translation>Die Datei ist größer als %1 MiB</translation>
    </message>
</context>
<context>
    <name>ProgressTask</name>
    <message>
        <source>The work ended without a result.</source>
        <translation>Die Arbeit endete ohne Ergebnis.</translation>
    </message>
</context>
<context>
    <name>ProgressText</name>
    <message>
        <source>1 minute</source>
        <translation>1 Minute</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n Stunde</numerusform>
            <numerusform>%n Stunden</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>About %1 left</source>
        <translation>Noch etwa %1</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 Bilder</translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation>%1 Dateien</translation>
    </message>
    <message>
        <source>%1 steps</source>
        <translation>%1 Schritte</translation>
    </message>
    <message>
        <source>A few seconds left</source>
        <translation>Noch wenige Sekunden</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds left</source>
        <translation>
            <numerusform>Noch %n Sekunde</numerusform>
            <numerusform>Noch %n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>1 minute left</source>
        <translation>Noch 1 Minute</translation>
    </message>
    <message>
        <source>More than a day left</source>
        <translation>Noch mehr als ein Tag</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>Waiting to start</source>
        <translation>Wartet auf den Beginn</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Läuft</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Cancelling…</source>
        <translation>Wird abgebrochen …</translation>
    </message>
    <message>
        <source>Finished</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>1 task is still running.</source>
        <translation>1 Aufgabe läuft noch.</translation>
    </message>
    <message numerus="yes">
        <source>%n tasks are still running.</source>
        <translation>
            <numerusform>%n Aufgabe läuft noch.</numerusform>
            <numerusform>%n Aufgaben laufen noch.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>1 minute %n seconds left</source>
        <translation>
            <numerusform>Noch 1 Minute %n Sekunde</numerusform>
            <numerusform>Noch 1 Minute %n Sekunden</numerusform>
        </translation>
    </message>
</context>
</TS>
