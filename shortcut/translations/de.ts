<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CopyTestWindow</name>
    <message>
        <source>Seldial check</source>
        <translation>Seldial-Prüfung</translation>
    </message>
    <message>
        <source>Seldial tries to copy this text.</source>
        <translation>Seldial versucht, diesen Text zu kopieren.</translation>
    </message>
</context>
<context>
    <name>Delivery</name>
    <message>
        <source>Seldial has not answered</source>
        <translation>Seldial hat nicht geantwortet</translation>
    </message>
    <message>
        <source>Seldial refused the shortcut: %1</source>
        <translation>Seldial hat das Tastenkürzel abgelehnt: %1</translation>
    </message>
    <message>
        <source>Standard output cannot be written.</source>
        <translation>Die Standardausgabe kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>&amp;Use this shortcut</source>
        <translation>Dieses Kürzel &amp;verwenden</translation>
    </message>
    <message>
        <source>&amp;Send to Seldial</source>
        <translation>An Seldial &amp;senden</translation>
    </message>
    <message>
        <source>This key has no name, so the shortcut cannot be saved.</source>
        <translation>Diese Taste hat keinen Namen, unter dem sie gespeichert werden könnte.</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>&amp;Speichern</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <translation>Feststelltaste</translation>
    </message>
    <message>
        <source>Num Lock</source>
        <translation>Num</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Lauter</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Leiser</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Pfeil links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Pfeil rechts</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Pfeil ab</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Pfeil auf</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>key %1</source>
        <translation>Taste %1</translation>
    </message>
    <message>
        <source>Keypad %1</source>
        <translation>Ziffernblock %1</translation>
    </message>
</context>
<context>
    <name>NumberChooser</name>
    <message>
        <source>Call</source>
        <translation>Anrufen</translation>
    </message>
    <message>
        <source>&amp;Which number do you want to call?</source>
        <translation>&amp;Welche Nummer möchten Sie anrufen?</translation>
    </message>
    <message>
        <source>&amp;Do you want to call this number?</source>
        <translation>&amp;Möchten Sie diese Nummer anrufen?</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Nummern</translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>&amp;Anrufen</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>there is no program</source>
        <translation>es ist kein Programm angegeben</translation>
    </message>
    <message>
        <source>a quote is not closed, or nothing follows a backslash</source>
        <translation>ein Anführungszeichen ist nicht geschlossen, oder auf einen umgekehrten Schrägstrich folgt nichts</translation>
    </message>
    <message>
        <source>the program cannot be a part of the selection</source>
        <translation>das Programm kann kein Teil der Auswahl sein</translation>
    </message>
    <message>
        <source>seldial-uc could not be started.</source>
        <translation>seldial-uc konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>&amp;Start when I log in</source>
        <translation>Bei der Anmeldung s&amp;tarten</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Noch nichts</translation>
    </message>
    <message>
        <source>The application for tel: links</source>
        <translation>Die Anwendung für tel:-Links</translation>
    </message>
    <message>
        <source>The application for sip: links</source>
        <translation>Die Anwendung für sip:-Links</translation>
    </message>
    <message>
        <source>The application for callto: links</source>
        <translation>Die Anwendung für callto:-Links</translation>
    </message>
    <message>
        <source>A program</source>
        <translation>Ein Programm</translation>
    </message>
    <message>
        <source>program --call {}</source>
        <translation>programm --call {}</translation>
    </message>
    <message>
        <source>&amp;Dial with</source>
        <translation>&amp;Wählen mit</translation>
    </message>
    <message>
        <source>&amp;Program</source>
        <translation>&amp;Programm</translation>
    </message>
    <message>
        <source>C&amp;ountry of the numbers</source>
        <translation>La&amp;nd der Nummern</translation>
    </message>
    <message>
        <source>Dial with</source>
        <translation>Wählen mit</translation>
    </message>
    <message>
        <source>What calls the number that was selected.</source>
        <translation>Womit die ausgewählte Nummer angerufen wird.</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>{} stands for the number, {tel} for its tel: URI, {text} for the selected text.</source>
        <translation>{} steht für die Nummer, {tel} für ihre tel:-URI, {text} für den ausgewählten Text.</translation>
    </message>
    <message>
        <source>Country of the numbers</source>
        <translation>Land der Nummern</translation>
    </message>
    <message>
        <source>Two letters, such as NL: where numbers without a country code belong.</source>
        <translation>Zwei Buchstaben, etwa NL: wohin Nummern ohne Ländervorwahl gehören.</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Dials in every session from now on.</source>
        <translation>Wählt ab jetzt in jeder Sitzung.</translation>
    </message>
    <message>
        <source>The program cannot be run: %1.</source>
        <translation>Das Programm kann nicht ausgeführt werden: %1.</translation>
    </message>
    <message>
        <source>Choose what to dial with first.</source>
        <translation>Wählen Sie zuerst aus, womit angerufen wird.</translation>
    </message>
</context>
<context>
    <name>ShortcutWindow</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Aufzeichnen</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Seldial settings</source>
        <translation>Seldial-Einstellungen</translation>
    </message>
    <message>
        <source>Seldial shortcut</source>
        <translation>Seldial-Tastenkürzel</translation>
    </message>
    <message>
        <source>Select a number anywhere, then press</source>
        <translation>Irgendwo eine Nummer auswählen, dann drücken</translation>
    </message>
    <message>
        <source>Click here and press a shortcut</source>
        <translation>Hier klicken und ein Tastenkürzel drücken</translation>
    </message>
    <message>
        <source>&amp;Time to copy the selection</source>
        <translation>&amp;Zeit zum Kopieren der Auswahl</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>Closes the window and changes nothing.</source>
        <translation>Schließt das Fenster und ändert nichts.</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Record a new shortcut</source>
        <translation>Ein neues Tastenkürzel aufzeichnen</translation>
    </message>
    <message>
        <source>Press the new shortcut afterwards. Return keeps it, Escape brings the old one back.</source>
        <translation>Drücken Sie danach das neue Tastenkürzel. Die Eingabetaste behält es, Esc bringt das alte zurück.</translation>
    </message>
    <message>
        <source>Clear the shortcut</source>
        <translation>Tastenkürzel löschen</translation>
    </message>
    <message>
        <source>Leaves no shortcut until one is recorded.</source>
        <translation>Danach gibt es kein Tastenkürzel, bis eines aufgezeichnet wird.</translation>
    </message>
    <message>
        <source>How long the other application gets to copy its selection, in milliseconds.</source>
        <translation>Wie lange die andere Anwendung Zeit hat, ihre Auswahl zu kopieren, in Millisekunden.</translation>
    </message>
    <message>
        <source>Time to copy the selection</source>
        <translation>Zeit zum Kopieren der Auswahl</translation>
    </message>
    <message>
        <source>Hands the shortcut over and closes the window.</source>
        <translation>Übergibt das Tastenkürzel und schließt das Fenster.</translation>
    </message>
    <message>
        <source>No shortcut yet</source>
        <translation>Noch kein Tastenkürzel</translation>
    </message>
    <message>
        <source>Press the new shortcut…</source>
        <translation>Neues Tastenkürzel drücken …</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufzeichnung läuft</translation>
    </message>
    <message>
        <source>Return keeps the shortcut, Escape brings the old one back.</source>
        <translation>Die Eingabetaste behält das Tastenkürzel, Esc bringt das alte zurück.</translation>
    </message>
    <message>
        <source>It works</source>
        <translation>Es funktioniert</translation>
    </message>
    <message>
        <source>The shortcut was not handed over</source>
        <translation>Das Tastenkürzel wurde nicht übergeben</translation>
    </message>
    <message>
        <source>Try it here</source>
        <translation>Hier ausprobieren</translation>
    </message>
    <message>
        <source>Record a shortcut first: modifier keys, such as Ctrl and Alt, and one key.</source>
        <translation>Zeichnen Sie zuerst ein Tastenkürzel auf: Zusatztasten wie Strg und Alt und eine weitere Taste.</translation>
    </message>
    <message>
        <source>One key is missing</source>
        <translation>Eine Taste fehlt</translation>
    </message>
    <message>
        <source>Modifier keys alone cannot be a shortcut. Press them with one more key.</source>
        <translation>Zusatztasten allein können kein Tastenkürzel sein. Drücken Sie sie zusammen mit einer weiteren Taste.</translation>
    </message>
    <message>
        <source>This desktop cannot use it</source>
        <translation>Auf diesem Desktop ist es nicht möglich</translation>
    </message>
    <message>
        <source>The keyboard has no such key, or Seldial uses the combination itself to copy.</source>
        <translation>Die Tastatur hat diese Taste nicht, oder Seldial verwendet die Kombination selbst zum Kopieren.</translation>
    </message>
    <message>
        <source>Seldial uses this shortcut</source>
        <translation>Seldial verwendet dieses Tastenkürzel</translation>
    </message>
    <message>
        <source>Press it and release it: this panel lights up, and nothing is dialled.</source>
        <translation>Drücken Sie es und lassen Sie es los: Dieses Feld leuchtet auf, und nichts wird gewählt.</translation>
    </message>
    <message>
        <source>Another program holds this shortcut</source>
        <translation>Ein anderes Programm hat dieses Tastenkürzel</translation>
    </message>
    <message>
        <source>If that program is Seldial, keep it. Otherwise record another one.</source>
        <translation>Ist dieses Programm Seldial, behalten Sie es. Sonst zeichnen Sie ein anderes auf.</translation>
    </message>
    <message>
        <source>Press the shortcut and release it: this panel lights up.</source>
        <translation>Drücken Sie das Tastenkürzel und lassen Sie es los: Dieses Feld leuchtet auf.</translation>
    </message>
    <message>
        <source>On Wayland this does not show whether the desktop allows it. Seldial reports that later.</source>
        <translation>Unter Wayland ist das kein Zeichen, dass der Desktop es gewährt: Das meldet Seldial später.</translation>
    </message>
</context>
</TS>
