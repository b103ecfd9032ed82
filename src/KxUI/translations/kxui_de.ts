<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
        <source>Chrome trace (*.json);;All files (*.*)</source>
        <translation>Chrome-Trace (*.json);;Alle Dateien (*.*)</translation>
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
    <name>Kestrel::UI::PromptComboBox</name>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
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
</TS>
