<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>BuiltInLayout</name>
    <message>
        <source>&amp;Review</source>
        <translation>&amp;Sichtung</translation>
    </message>
    <message>
        <source>&amp;Grade</source>
        <translation>&amp;Farbkorrektur</translation>
    </message>
    <message>
        <source>&amp;Wide</source>
        <translation>&amp;Breit</translation>
    </message>
    <message>
        <source>S&amp;copes</source>
        <translation>Messansi&amp;chten</translation>
    </message>
</context>
<context>
    <name>ExportRun</name>
    <message>
        <source>This is the file that the frame is read from.</source>
        <translation>Das ist die Datei, aus der das Bild gelesen wird.</translation>
    </message>
    <message>
        <source>The frame cannot be read.</source>
        <translation>Das Bild kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>There is not enough memory for this image.</source>
        <translation>Für dieses Bild ist nicht genug Speicher da.</translation>
    </message>
    <message>
        <source>Waits for an answer about frame %1</source>
        <translation>Wartet auf eine Antwort zu Bild %1</translation>
    </message>
    <message>
        <source>%1 of %2 frames were not written. %3</source>
        <translation>%1 von %2 Bildern wurden nicht geschrieben. %3</translation>
    </message>
</context>
<context>
    <name>FrameDecoder</name>
    <message>
        <source>The file cannot be found: %1</source>
        <translation>Die Datei ist nicht zu finden: %1</translation>
    </message>
    <message>
        <source>This is not a regular file.</source>
        <translation>Dies ist keine gewöhnliche Datei.</translation>
    </message>
    <message>
        <source>The file is empty (0 bytes).</source>
        <translation>Die Datei ist leer (0 Byte).</translation>
    </message>
    <message>
        <source>1 channel</source>
        <translation>1 Kanal</translation>
    </message>
    <message>
        <source>%1 channels</source>
        <translation>%1 Kanäle</translation>
    </message>
    <message>
        <source>The file cannot be read: %1</source>
        <translation>Die Datei lässt sich nicht lesen: %1</translation>
    </message>
    <message>
        <source>Deep images are not shown.</source>
        <translation>Tiefenbilder werden nicht gezeigt.</translation>
    </message>
    <message>
        <source>The file holds no pixels.</source>
        <translation>Die Datei enthält keine Pixel.</translation>
    </message>
    <message>
        <source>The file&apos;s image window is damaged.</source>
        <translation>Das Bildfenster der Datei ist beschädigt.</translation>
    </message>
    <message>
        <source>The image is too large to show: %1 x %2 pixels.</source>
        <translation>Das Bild ist zu groß zum Anzeigen: %1 x %2 Pixel.</translation>
    </message>
    <message>
        <source>The image is too wide to read.</source>
        <translation>Das Bild ist zu breit zum Lesen.</translation>
    </message>
    <message>
        <source>The file is damaged or cut short: %1</source>
        <translation>Die Datei ist beschädigt oder abgeschnitten: %1</translation>
    </message>
    <message>
        <source>There is not enough memory for this image.</source>
        <translation>Für dieses Bild reicht der Speicher nicht.</translation>
    </message>
</context>
<context>
    <name>FrameNote</name>
    <message>
        <source>Frame %1</source>
        <translation>Bild %1</translation>
    </message>
</context>
<context>
    <name>ImageFile</name>
    <message>
        <source>The picture cannot be encoded: %1</source>
        <translation>Das Bild kann nicht kodiert werden: %1</translation>
    </message>
    <message>
        <source>The disk is full.</source>
        <translation>Der Datenträger ist voll.</translation>
    </message>
    <message>
        <source>The folder cannot be written to.</source>
        <translation>In den Ordner kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The folder is not there.</source>
        <translation>Den Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>There is a file of this name by now, and it was not replaced.</source>
        <translation>Inzwischen gibt es eine Datei dieses Namens; sie wurde nicht ersetzt.</translation>
    </message>
    <message>
        <source>There is a folder of this name.</source>
        <translation>Es gibt einen Ordner dieses Namens.</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::BalancePanel</name>
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
        <source>Shadows</source>
        <translation>Schatten</translation>
    </message>
    <message>
        <source>Midtones</source>
        <translation>Mitteltöne</translation>
    </message>
    <message>
        <source>Highlights</source>
        <translation>Lichter</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Reset %1</source>
        <translation>%1 zurücksetzen</translation>
    </message>
    <message>
        <source>Drag the ball for the colour, the ring for the brightness</source>
        <translation>Die Kugel zieht die Farbe, der Ring die Helligkeit</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ColorPanel</name>
    <message>
        <source>Tint Gain</source>
        <translation>Gain tönen</translation>
    </message>
    <message>
        <source>The gain gets this hue and saturation</source>
        <translation>Der Gain erhält diesen Farbton und diese Sättigung</translation>
    </message>
    <message>
        <source>Make Grey</source>
        <translation>Zu Grau machen</translation>
    </message>
    <message>
        <source>The gain becomes the one by which this colour, taken from the picture, is a grey: for white balance</source>
        <translation>Der Gain wird der, mit dem diese Farbe des Bildes ein Grau ist: für den Weißabgleich</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>Palette</translation>
    </message>
    <message>
        <source>Swatches from files and to files, also of other programs</source>
        <translation>Farbfelder aus Dateien und in Dateien, auch anderer Programme</translation>
    </message>
    <message>
        <source>&amp;Import...</source>
        <translation>&amp;Importieren...</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>&amp;Exportieren...</translation>
    </message>
    <message>
        <source>Import Palette</source>
        <translation>Palette importieren</translation>
    </message>
    <message>
        <source>Export Palette</source>
        <translation>Palette exportieren</translation>
    </message>
    <message>
        <source>Palettes (*.gpl)</source>
        <translation>Paletten (*.gpl)</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::CurvesPanel</name>
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
    <message>
        <source>%1 Curve: %2</source>
        <translation>Kurve %1: %2</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ExportDesk</name>
    <message>
        <source>OpenEXR, scene-linear half floats (*.exr)</source>
        <translation>OpenEXR, szenenlinear, halbe Genauigkeit (*.exr)</translation>
    </message>
    <message>
        <source>PNG, as a screen shows it (*.png)</source>
        <translation>PNG, wie ein Bildschirm es zeigt (*.png)</translation>
    </message>
    <message>
        <source>Export Frame</source>
        <translation>Bild exportieren</translation>
    </message>
    <message>
        <source>Export Sequence</source>
        <translation>Sequenz exportieren</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Exporting %1</source>
        <translation>%1 wird exportiert</translation>
    </message>
    <message>
        <source>Frame %1 was not exported.</source>
        <translation>Bild %1 wurde nicht exportiert.</translation>
    </message>
    <message>
        <source>&amp;Retry</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Skip</source>
        <translation>Ü&amp;berspringen</translation>
    </message>
    <message>
        <source>Skip &amp;All Such</source>
        <translation>&amp;Alle solchen überspringen</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>An&amp;halten</translation>
    </message>
    <message>
        <source>1 frame was exported to %1.</source>
        <translation>1 Bild wurde nach %1 exportiert.</translation>
    </message>
    <message>
        <source>%1 frames were exported to %2.</source>
        <translation>%1 Bilder wurden nach %2 exportiert.</translation>
    </message>
    <message>
        <source>%1 of %2 frames were exported to %3.</source>
        <translation>%1 von %2 Bildern wurden nach %3 exportiert.</translation>
    </message>
    <message>
        <source>The export was cancelled.</source>
        <translation>Der Export wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Without a file, and left out: %1</source>
        <translation>Ohne Datei und ausgelassen: %1</translation>
    </message>
    <message>
        <source>Not written: %1. %2</source>
        <translation>Nicht geschrieben: %1. %2</translation>
    </message>
    <message>
        <source>Captures (*.xml)</source>
        <translation>Aufzeichnungen (*.xml)</translation>
    </message>
    <message>
        <source>Traces for trace viewers (*.json)</source>
        <translation>Traces für Trace-Betrachter (*.json)</translation>
    </message>
    <message>
        <source>Exporting a capture</source>
        <translation>Eine Aufzeichnung wird exportiert</translation>
    </message>
    <message>
        <source>Export Capture</source>
        <translation>Aufzeichnung exportieren</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ExportOptions</name>
    <message>
        <source>&amp;Depth:</source>
        <translation>&amp;Tiefe:</translation>
    </message>
    <message>
        <source>Apply the &amp;grade</source>
        <translation>&amp;Farbkorrektur anwenden</translation>
    </message>
    <message>
        <source>F&amp;rames:</source>
        <translation>&amp;Bilder:</translation>
    </message>
    <message>
        <source>8 bits a channel</source>
        <translation>8 Bit je Kanal</translation>
    </message>
    <message>
        <source>16 bits a channel</source>
        <translation>16 Bit je Kanal</translation>
    </message>
    <message>
        <source>All, %1 to %2</source>
        <translation>Alle, %1 bis %2</translation>
    </message>
    <message>
        <source>Marked, %1 to %2</source>
        <translation>Markierte, %1 bis %2</translation>
    </message>
    <message>
        <source>Pictures are exported as .exr or .png.</source>
        <translation>Bilder werden als .exr oder .png exportiert.</translation>
    </message>
    <message>
        <source>None of these frames has a file.</source>
        <translation>Keines dieser Bilder hat eine Datei.</translation>
    </message>
    <message>
        <source>Write where the number of the frame is to stand, as in name.####.exr.</source>
        <translation>Schreiben Sie, wo die Bildnummer stehen soll, etwa name.####.exr.</translation>
    </message>
    <message>
        <source>These are the files that the frames are read from. Choose another name.</source>
        <translation>Das sind die Dateien, aus denen die Bilder gelesen werden. Wählen Sie einen anderen Namen.</translation>
    </message>
    <message numerus="yes">
        <source>%n frame(s) of these have no file and are left out: %1</source>
        <translation>
            <numerusform>Zu %n Bild davon gibt es keine Datei, es wird ausgelassen: %1</numerusform>
            <numerusform>Zu %n Bildern davon gibt es keine Dateien, sie werden ausgelassen: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ExposureCurvePanel</name>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Exposure over the frames, in stops</source>
        <translation>Belichtung über die Bilder, in Blenden</translation>
    </message>
    <message>
        <source>Exposure: %1</source>
        <translation>Belichtung: %1</translation>
    </message>
    <message>
        <source>%1 stops on every frame. A press below sets the first key.</source>
        <translation>%1 Blenden auf jedem Bild. Ein Druck hierunter setzt den ersten Schlüssel.</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ExposurePanel</name>
    <message>
        <source>Stops</source>
        <translation>Blenden</translation>
    </message>
    <message numerus="yes">
        <source>%n keys</source>
        <translation>
            <numerusform>%n Schlüssel</numerusform>
            <numerusform>%n Schlüssel</numerusform>
        </translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Multiplies the light</source>
        <translation>Vervielfacht das Licht</translation>
    </message>
    <message>
        <source>Exposure in stops</source>
        <translation>Belichtung in Blenden</translation>
    </message>
    <message>
        <source>Exposure key</source>
        <translation>Schlüssel der Belichtung</translation>
    </message>
    <message>
        <source>Sets a key of the exposure at this frame, or removes it. With keys, the exposure goes from one to the next.</source>
        <translation>Setzt auf diesem Bild einen Schlüssel der Belichtung oder entfernt ihn. Mit Schlüsseln geht die Belichtung von einem zum nächsten.</translation>
    </message>
    <message>
        <source>Add Exposure Key</source>
        <translation>Belichtungsschlüssel setzen</translation>
    </message>
    <message>
        <source>Remove Exposure Key</source>
        <translation>Belichtungsschlüssel entfernen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::FileMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Open &amp;Folder...</source>
        <translation>&amp;Ordner öffnen...</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>&amp;Neu laden</translation>
    </message>
    <message>
        <source>Path &amp;Mappings...</source>
        <translation>&amp;Pfadzuordnungen...</translation>
    </message>
    <message>
        <source>&amp;Export Sequence...</source>
        <translation>Sequenz e&amp;xportieren...</translation>
    </message>
    <message>
        <source>Export Fr&amp;ame...</source>
        <translation>&amp;Bild exportieren...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>Be&amp;enden</translation>
    </message>
    <message>
        <source>Images (%1)</source>
        <translation>Bilder (%1)</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::FolderTask</name>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::GradePanel</name>
    <message>
        <source>Bypass</source>
        <translation>Umgehen</translation>
    </message>
    <message>
        <source>Shows the sequence without its grade</source>
        <translation>Zeigt die Sequenz ohne ihre Farbkorrektur</translation>
    </message>
    <message>
        <source>grade</source>
        <translation>Farbkorrektur</translation>
    </message>
    <message>
        <source>Reset All</source>
        <translation>Alles zurücksetzen</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Gain</translation>
    </message>
    <message>
        <source>Left button: colour, on the ring value. F1 tells the rest.</source>
        <translation>Linke Taste: Farbe, auf dem Ring der Wert. F1 erklärt den Rest.</translation>
    </message>
    <message>
        <source>%1 gain</source>
        <translation>Gain %1</translation>
    </message>
    <message>
        <source>gain</source>
        <translation>Gain</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Curves</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>YCbCr preview</source>
        <translation>YCbCr-Vorschau</translation>
    </message>
    <message>
        <source>Shows what 8-bit 4:2:2 keeps of the picture</source>
        <translation>Zeigt, was 8-Bit-4:2:2 vom Bild übrig lässt</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Reset %1</source>
        <translation>%1 zurücksetzen</translation>
    </message>
    <message>
        <source>balance</source>
        <translation>Balance</translation>
    </message>
    <message>
        <source>Balance</source>
        <translation>Balance</translation>
    </message>
    <message>
        <source>curves</source>
        <translation>Kurven</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::HelpDesk</name>
    <message>
        <source>&amp;Help on This Panel</source>
        <translation>&amp;Hilfe zu diesem Bereich</translation>
    </message>
    <message>
        <source>&amp;Contents</source>
        <translation>&amp;Inhalt</translation>
    </message>
    <message>
        <source>The help pages are not installed.</source>
        <translation>Die Hilfeseiten sind nicht installiert.</translation>
    </message>
    <message>
        <source>The help pages cannot be read at the moment. Try again.</source>
        <translation>Die Hilfeseiten sind gerade nicht lesbar. Bitte noch einmal versuchen.</translation>
    </message>
    <message>
        <source>No browser could be started. The page is at %1</source>
        <translation>Es ließ sich kein Browser starten. Die Seite steht unter %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::HistoryPanel</name>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Search edits</source>
        <translation>Änderungen suchen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::MainWindow</name>
    <message>
        <source>%1 - KxUI Workbench</source>
        <translation>%1 - KxUI Workbench</translation>
    </message>
    <message>
        <source>&amp;Playback</source>
        <translation>&amp;Wiedergabe</translation>
    </message>
    <message>
        <source>&amp;Play</source>
        <translation>&amp;Abspielen</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>Play &amp;Backwards</source>
        <translation>&amp;Rückwärts abspielen</translation>
    </message>
    <message>
        <source>St&amp;op</source>
        <translation>&amp;Stopp</translation>
    </message>
    <message>
        <source>Play For&amp;wards</source>
        <translation>&amp;Vorwärts abspielen</translation>
    </message>
    <message>
        <source>&amp;Repeat</source>
        <translation>&amp;Wiederholung</translation>
    </message>
    <message>
        <source>Step B&amp;ack</source>
        <translation>Ein Bild &amp;zurück</translation>
    </message>
    <message>
        <source>Step &amp;Forward</source>
        <translation>Ein Bild v&amp;or</translation>
    </message>
    <message>
        <source>Skip Back</source>
        <translation>Mehrere Bilder zurück</translation>
    </message>
    <message>
        <source>Skip Forward</source>
        <translation>Mehrere Bilder vor</translation>
    </message>
    <message>
        <source>Jump Back</source>
        <translation>Zurückspringen</translation>
    </message>
    <message>
        <source>Jump Forward</source>
        <translation>Vorspringen</translation>
    </message>
    <message>
        <source>Half Way to Previous Keyframe</source>
        <translation>Halber Weg zum vorigen Keyframe</translation>
    </message>
    <message>
        <source>Half Way to Next Keyframe</source>
        <translation>Halber Weg zum nächsten Keyframe</translation>
    </message>
    <message>
        <source>Go to Star&amp;t</source>
        <translation>Zum An&amp;fang</translation>
    </message>
    <message>
        <source>Go to &amp;End</source>
        <translation>Zum &amp;Ende</translation>
    </message>
    <message>
        <source>Type a Ti&amp;me</source>
        <translation>Zeit e&amp;ingeben</translation>
    </message>
    <message>
        <source>Jump to &amp;Keyframes Only</source>
        <translation>Nur zu &amp;Keyframes springen</translation>
    </message>
    <message>
        <source>&amp;Once</source>
        <translation>&amp;Einmal</translation>
    </message>
    <message>
        <source>&amp;Loop</source>
        <translation>&amp;Schleife</translation>
    </message>
    <message>
        <source>&amp;Bounce</source>
        <translation>&amp;Hin und her</translation>
    </message>
    <message>
        <source>&amp;Marks</source>
        <translation>&amp;Marken</translation>
    </message>
    <message>
        <source>Mark &amp;In</source>
        <translation>&amp;In-Marke setzen</translation>
    </message>
    <message>
        <source>Mark &amp;Out</source>
        <translation>&amp;Out-Marke setzen</translation>
    </message>
    <message>
        <source>Go to I&amp;n</source>
        <translation>Zur I&amp;n-Marke</translation>
    </message>
    <message>
        <source>Go to O&amp;ut</source>
        <translation>Zur O&amp;ut-Marke</translation>
    </message>
    <message>
        <source>&amp;Clear In and Out</source>
        <translation>In und Out &amp;löschen</translation>
    </message>
    <message>
        <source>Play &amp;Between Marks</source>
        <translation>&amp;Zwischen den Marken abspielen</translation>
    </message>
    <message>
        <source>Set or Remove &amp;Keyframe</source>
        <translation>&amp;Keyframe setzen oder entfernen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Frames</source>
        <translation>&amp;Bilder</translation>
    </message>
    <message>
        <source>&amp;Timecode</source>
        <translation>&amp;Timecode</translation>
    </message>
    <message>
        <source>&amp;Drop-frame Timecode</source>
        <translation>&amp;Drop-Frame-Timecode</translation>
    </message>
    <message>
        <source>&amp;Whole Clip</source>
        <translation>&amp;Ganzer Clip</translation>
    </message>
    <message>
        <source>&amp;Marked Range</source>
        <translation>&amp;Markierter Abschnitt</translation>
    </message>
    <message>
        <source>Dar&amp;k</source>
        <translation>D&amp;unkel</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>W&amp;erkzeuge</translation>
    </message>
    <message>
        <source>&amp;Profiler</source>
        <translation>&amp;Profiler</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>The last workspace could not be restored. %1</source>
        <translation>Die letzte Arbeitsfläche ließ sich nicht herstellen. %1</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Bypass Grade</source>
        <translation>Farbkorrektur &amp;umgehen</translation>
    </message>
    <message>
        <source>High &amp;Contrast</source>
        <translation>Hoher &amp;Kontrast</translation>
    </message>
    <message>
        <source>&amp;Render Times</source>
        <translation>&amp;Rechenzeiten</translation>
    </message>
    <message>
        <source>&amp;Tasks</source>
        <translation>&amp;Aufgaben</translation>
    </message>
    <message>
        <source>&amp;Fill Cache</source>
        <translation>&amp;Cache füllen</translation>
    </message>
    <message>
        <source>&amp;Export Capture...</source>
        <translation>Aufzeichnung e&amp;xportieren...</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::MarkHistory</name>
    <message>
        <source>Marks</source>
        <translation>Marken</translation>
    </message>
    <message>
        <source>Keyframes</source>
        <translation>Schlüsselbilder</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::PathMappings</name>
    <message>
        <source>Path Mappings</source>
        <translation>Pfadzuordnungen</translation>
    </message>
    <message>
        <source>Where folders of other machines are found on this one: for paths that are typed, copied, or come with a favourite.</source>
        <translation>Wo Ordner anderer Rechner auf diesem zu finden sind: für Pfade, die getippt oder eingefügt werden oder mit einem Favoriten kommen.</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::RateMenu</name>
    <message>
        <source>Frames per Secon&amp;d</source>
        <translation>Bi&amp;lder je Sekunde</translation>
    </message>
    <message>
        <source>%1 fps</source>
        <translation>%1 B/s</translation>
    </message>
    <message>
        <source>&amp;Other...</source>
        <translation>&amp;Andere...</translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation>Bildrate</translation>
    </message>
    <message>
        <source>Frames per second, as 24, 23.976 or 30000/1001:</source>
        <translation>Bilder je Sekunde, etwa 24, 23.976 oder 30000/1001:</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Setzen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::RecentShots</name>
    <message>
        <source>Open Recen&amp;t</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;%1  %2</source>
        <translation>&amp;%1  %2</translation>
    </message>
    <message>
        <source>&amp;Clear List</source>
        <translation>Liste &amp;leeren</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::RenderTimesPanel</name>
    <message>
        <source>Here is shown how long frames take to decode, to grade and to paint, while the profiler records it.</source>
        <translation>Hier steht, wie lange das Dekodieren, Korrigieren und Zeichnen der Bilder dauert, solange der Profiler aufzeichnet.</translation>
    </message>
    <message>
        <source>Time a frame</source>
        <translation>Zeit je Bild</translation>
    </message>
    <message>
        <source>Decode</source>
        <translation>Dekodieren</translation>
    </message>
    <message>
        <source>Grade</source>
        <translation>Korrektur</translation>
    </message>
    <message>
        <source>Paint</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>Cache by sequence</source>
        <translation>Cache je Sequenz</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Gelesen</translation>
    </message>
    <message>
        <source>Held now</source>
        <translation>Jetzt gehalten</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>%1 fps</source>
        <translation>%1 B/s</translation>
    </message>
    <message>
        <source>&amp;Start Recording</source>
        <translation>Aufzeichnung &amp;starten</translation>
    </message>
    <message>
        <source>&amp;Stop Recording</source>
        <translation>Aufzeichnung &amp;anhalten</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Zeichnet auf</translation>
    </message>
    <message>
        <source>Nothing is recorded.</source>
        <translation>Nichts wird aufgezeichnet.</translation>
    </message>
    <message>
        <source>Decoded</source>
        <translation>Dekodiert</translation>
    </message>
    <message>
        <source>Graded</source>
        <translation>Korrigiert</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>Frei</translation>
    </message>
    <message>
        <source>Recording has stopped.</source>
        <translation>Die Aufzeichnung ist angehalten.</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::SampleGenerator</name>
    <message>
        <source>The sample cannot be written to %1: %2</source>
        <translation>Das Beispiel lässt sich nicht nach %1 schreiben: %2</translation>
    </message>
    <message>
        <source>The sample cannot be written: %1</source>
        <translation>Das Beispiel lässt sich nicht schreiben: %1</translation>
    </message>
    <message>
        <source>The sample cannot be moved to %1.</source>
        <translation>Das Beispiel lässt sich nicht nach %1 verschieben.</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ScopeBar</name>
    <message>
        <source>What is counted</source>
        <translation>Was gezählt wird</translation>
    </message>
    <message>
        <source>Units, matrix, held result, region</source>
        <translation>Einheiten, Matrix, gehaltenes Ergebnis, Bereich</translation>
    </message>
    <message>
        <source>Scope settings</source>
        <translation>Einstellungen der Messansicht</translation>
    </message>
    <message>
        <source>Values counted</source>
        <translation>Gezählte Werte</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>The values of the file, before the grade</source>
        <translation>Die Werte der Datei, vor der Korrektur</translation>
    </message>
    <message>
        <source>The graded values, as a screen gets them</source>
        <translation>Die korrigierten Werte, wie ein Bildschirm sie bekommt</translation>
    </message>
    <message>
        <source>&amp;Luma and Chroma</source>
        <translation>&amp;Luma und Chroma</translation>
    </message>
    <message>
        <source>&amp;Full-range Codes</source>
        <translation>&amp;Voller Wertebereich</translation>
    </message>
    <message>
        <source>Let &amp;Held Result Go</source>
        <translation>&amp;Gehaltenes Ergebnis loslassen</translation>
    </message>
    <message>
        <source>&amp;Hold Result</source>
        <translation>Ergebnis &amp;halten</translation>
    </message>
    <message>
        <source>&amp;Region by Keys</source>
        <translation>&amp;Bereich mit Tasten</translation>
    </message>
    <message>
        <source>&amp;Whole Picture</source>
        <translation>&amp;Ganzes Bild</translation>
    </message>
    <message>
        <source>&amp;Clear Selection</source>
        <translation>&amp;Auswahl aufheben</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ScopeCell</name>
    <message>
        <source>Scope</source>
        <translation>Messansicht</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ScopeFeed</name>
    <message>
        <source>No picture</source>
        <translation>Kein Bild</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>Screen, as the file is too large</source>
        <translation>Bildschirm, da die Datei zu groß ist</translation>
    </message>
    <message>
        <source>8 bit</source>
        <translation>8 Bit</translation>
    </message>
    <message>
        <source>half float</source>
        <translation>halbe Genauigkeit</translation>
    </message>
    <message>
        <source>16 bit</source>
        <translation>16 Bit</translation>
    </message>
    <message>
        <source>scene-linear</source>
        <translation>szenenlinear</translation>
    </message>
    <message>
        <source>film log</source>
        <translation>Film-Log</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ScopeOverlay</name>
    <message>
        <source>Region of the scopes</source>
        <translation>Bereich der Messansichten</translation>
    </message>
    <message>
        <source>The whole picture</source>
        <translation>Das ganze Bild</translation>
    </message>
    <message>
        <source>%1 × %2 pixels from %3, %4</source>
        <translation>%1 × %2 Bildpunkte ab %3, %4</translation>
    </message>
    <message>
        <source>; marked pixel %1, %2</source>
        <translation>; markierter Bildpunkt %1, %2</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ScopesPanel</name>
    <message>
        <source>Number of scopes</source>
        <translation>Anzahl der Messansichten</translation>
    </message>
    <message>
        <source>&amp;Units</source>
        <translation>&amp;Einheiten</translation>
    </message>
    <message>
        <source>Held Result &amp;Visible</source>
        <translation>Gehaltenes Ergebnis &amp;sichtbar</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::SequenceListPanel</name>
    <message>
        <source>Show in File Manager</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::Session</name>
    <message>
        <source>The sequence goes from %1 to %2.</source>
        <translation>Die Sequenz reicht von %1 bis %2.</translation>
    </message>
    <message>
        <source>%1 has no file for it.</source>
        <translation>%1 hat keine Datei dafür.</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::StatisticsPanel</name>
    <message>
        <source>&amp;Units</source>
        <translation>&amp;Einheiten</translation>
    </message>
    <message>
        <source>Colu&amp;mns</source>
        <translation>&amp;Spalten</translation>
    </message>
    <message>
        <source>&amp;Difference from Held Result</source>
        <translation>&amp;Unterschied zum gehaltenen Ergebnis</translation>
    </message>
    <message>
        <source>Co&amp;py as Text</source>
        <translation>Als Text ko&amp;pieren</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::StatusLine</name>
    <message>
        <source>Current time</source>
        <translation>Aktuelle Zeit</translation>
    </message>
    <message>
        <source>   %1 frames</source>
        <translation>   %1 Bilder</translation>
    </message>
    <message>
        <source>%1 of %2 fps</source>
        <translation>%1 von %2 Bildern/s</translation>
    </message>
    <message>
        <source>%1 fps</source>
        <translation>%1 Bilder/s</translation>
    </message>
    <message>
        <source>%1 dropped</source>
        <translation>%1 ausgelassen</translation>
    </message>
    <message>
        <source>Cache size</source>
        <translation>Größe des Zwischenspeichers</translation>
    </message>
    <message>
        <source>The memory that decoded frames may take</source>
        <translation>Der Speicher, den dekodierte Bilder belegen dürfen</translation>
    </message>
    <message>
        <source>Cache %1 of</source>
        <translation>Zwischenspeicher %1 von</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 Bilder</translation>
    </message>
    <message>
        <source>The rate of playback; press to choose another one</source>
        <translation>Die Rate der Wiedergabe; drücken Sie, um eine andere zu wählen</translation>
    </message>
    <message>
        <source>, %1 times as fast</source>
        <translation>, %1-mal so schnell</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::SwatchKeeper</name>
    <message>
        <source>The swatches can not be read: %1</source>
        <translation>Die Farbfelder lassen sich nicht lesen: %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>The swatches can not be saved: %1</source>
        <translation>Die Farbfelder lassen sich nicht speichern: %1</translation>
    </message>
    <message>
        <source>This is no file.</source>
        <translation>Das ist keine Datei.</translation>
    </message>
    <message>
        <source>There is no room for all of its colours.</source>
        <translation>Für alle ihre Farben ist kein Platz.</translation>
    </message>
    <message>
        <source>The swatches can not be saved: what could not be read of them would be lost.</source>
        <translation>Die Farbfelder lassen sich nicht speichern: Was von ihnen nicht gelesen werden konnte, ginge verloren.</translation>
    </message>
    <message>
        <source>What could not be read of the swatches is kept in %1</source>
        <translation>Was von den Farbfeldern nicht gelesen werden konnte, liegt in %1</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::TaskDesk</name>
    <message>
        <source>Close the Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Files that are complete stay; nothing else is left behind.</source>
        <translation>Vollständige Dateien bleiben; sonst bleibt nichts zurück.</translation>
    </message>
    <message>
        <source>&amp;Keep Running</source>
        <translation>&amp;Weiterlaufen lassen</translation>
    </message>
    <message>
        <source>&amp;Cancel Them and Quit</source>
        <translation>Ab&amp;brechen und beenden</translation>
    </message>
    <message>
        <source>Filling the cache</source>
        <translation>Cache wird gefüllt</translation>
    </message>
    <message>
        <source>Writing the sample</source>
        <translation>Beispiel wird geschrieben</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::TransportRow</name>
    <message>
        <source>Drag to go through the frames</source>
        <translation>Zum Durchlaufen der Bilder ziehen</translation>
    </message>
    <message>
        <source>Frames to skip</source>
        <translation>Zu überspringende Bilder</translation>
    </message>
    <message>
        <source>How many frames are skipped</source>
        <translation>Wie viele Bilder übersprungen werden</translation>
    </message>
    <message>
        <source>Skip backwards (Shift+Left)</source>
        <translation>Rückwärts überspringen (Umschalt+Links)</translation>
    </message>
    <message>
        <source>Skip forwards (Shift+Right)</source>
        <translation>Vorwärts überspringen (Umschalt+Rechts)</translation>
    </message>
    <message>
        <source>Skip backwards</source>
        <translation>Rückwärts überspringen</translation>
    </message>
    <message>
        <source>Skip forwards</source>
        <translation>Vorwärts überspringen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ViewerCanvas</name>
    <message>
        <source>Viewer</source>
        <translation>Betrachter</translation>
    </message>
    <message>
        <source>Frame %1 is missing</source>
        <translation>Bild %1 fehlt</translation>
    </message>
    <message>
        <source>Frame %1 cannot be shown</source>
        <translation>Bild %1 lässt sich nicht zeigen</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::ViewerPanel</name>
    <message>
        <source>Open a sequence from the list: double click it or press Return.</source>
        <translation>Öffnen Sie eine Sequenz aus der Liste: Doppelklick oder Eingabetaste.</translation>
    </message>
    <message>
        <source>decoding %1</source>
        <translation>lädt %1</translation>
    </message>
    <message>
        <source>%1 × %2   %3</source>
        <translation>%1 × %2   %3</translation>
    </message>
    <message>
        <source>   shown at %1 × %2</source>
        <translation>   gezeigt mit %1 × %2</translation>
    </message>
    <message>
        <source>Pixel under the pointer</source>
        <translation>Bildpunkt unter dem Zeiger</translation>
    </message>
    <message>
        <source>%1, %2:  %3</source>
        <translation>%1, %2:  %3</translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::Workspace</name>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>Kestrel::Workbench::WorkspaceMenu</name>
    <message>
        <source>&amp;Workspace</source>
        <translation>Arbeits&amp;fläche</translation>
    </message>
    <message>
        <source>&amp;Save Workspace...</source>
        <translation>Arbeitsfläche sp&amp;eichern...</translation>
    </message>
    <message>
        <source>&amp;Load Workspace...</source>
        <translation>Arbeitsfläche &amp;laden...</translation>
    </message>
    <message>
        <source>Rese&amp;t</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Panels</source>
        <translation>Be&amp;dienfelder</translation>
    </message>
    <message>
        <source>Pane &amp;Menu</source>
        <translation>Bereichs&amp;menü</translation>
    </message>
    <message>
        <source>&amp;Expand Pane</source>
        <translation>Bereich &amp;ausdehnen</translation>
    </message>
    <message>
        <source>Show Ta&amp;bs</source>
        <translation>Reiter a&amp;nzeigen</translation>
    </message>
    <message>
        <source>T&amp;urn Splitter</source>
        <translation>&amp;Teilung drehen</translation>
    </message>
    <message>
        <source>&amp;Full Screen</source>
        <translation>&amp;Vollbild</translation>
    </message>
    <message>
        <source>Save Workspace</source>
        <translation>Arbeitsfläche speichern</translation>
    </message>
    <message>
        <source>Workspaces (*.xml)</source>
        <translation>Arbeitsflächen (*.xml)</translation>
    </message>
    <message>
        <source>The workspace could not be saved to &quot;%1&quot;:
%2</source>
        <translation>Die Arbeitsfläche ließ sich nicht in „%1“ speichern:
%2</translation>
    </message>
    <message>
        <source>Load Workspace</source>
        <translation>Arbeitsfläche laden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no workspace that can be shown; nothing was changed.
%2</source>
        <translation>„%1“ ist keine Arbeitsfläche, die sich zeigen lässt; es bleibt alles, wie es war.
%2</translation>
    </message>
</context>
<context>
    <name>PageKind</name>
    <message>
        <source>Sequences</source>
        <translation>Sequenzen</translation>
    </message>
    <message>
        <source>Viewer</source>
        <translation>Betrachter</translation>
    </message>
    <message>
        <source>Timeline</source>
        <translation>Zeitleiste</translation>
    </message>
    <message>
        <source>Grade</source>
        <translation>Farbkorrektur</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Scopes</source>
        <translation>Messansichten</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <source>Render Times</source>
        <translation>Rechenzeiten</translation>
    </message>
</context>
<context>
    <name>Profiling</name>
    <message>
        <source>Frame shown</source>
        <translation>Gezeigtes Bild</translation>
    </message>
    <message>
        <source>Frames dropped</source>
        <translation>Ausgelassene Bilder</translation>
    </message>
    <message>
        <source>Playback (fps)</source>
        <translation>Wiedergabe (Bilder/s)</translation>
    </message>
    <message>
        <source>Viewer paint</source>
        <translation>Zeichnen des Betrachters</translation>
    </message>
    <message>
        <source>Cache fill</source>
        <translation>Cache gefüllt</translation>
    </message>
    <message>
        <source>Cache eviction</source>
        <translation>Aus dem Cache entfernt</translation>
    </message>
    <message>
        <source>Cache (MiB)</source>
        <translation>Cache (MiB)</translation>
    </message>
    <message>
        <source>Decode %1</source>
        <translation>Dekodieren %1</translation>
    </message>
    <message>
        <source>%1 before frame %2</source>
        <translation>%1 vor Bild %2</translation>
    </message>
    <message>
        <source>Grade</source>
        <translation>Korrektur</translation>
    </message>
</context>
<context>
    <name>ScopeKind</name>
    <message>
        <source>Histogram</source>
        <translation>Histogramm</translation>
    </message>
    <message>
        <source>Histogram by Channel</source>
        <translation>Histogramm je Kanal</translation>
    </message>
    <message>
        <source>Waveform</source>
        <translation>Wellenform</translation>
    </message>
    <message>
        <source>RGB Parade</source>
        <translation>RGB nebeneinander</translation>
    </message>
    <message>
        <source>YCbCr Parade</source>
        <translation>YCbCr nebeneinander</translation>
    </message>
    <message>
        <source>Vectorscope</source>
        <translation>Vektorskop</translation>
    </message>
    <message>
        <source>Colour Space</source>
        <translation>Farbraum</translation>
    </message>
</context>
</TS>
