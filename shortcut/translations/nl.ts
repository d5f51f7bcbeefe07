<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>CopyTestWindow</name>
    <message>
        <source>Seldial check</source>
        <translation>Seldial-controle</translation>
    </message>
    <message>
        <source>Seldial tries to copy this text.</source>
        <translation>Seldial probeert deze tekst te kopiëren.</translation>
    </message>
</context>
<context>
    <name>Delivery</name>
    <message>
        <source>Seldial has not answered</source>
        <translation>Seldial heeft niet geantwoord</translation>
    </message>
    <message>
        <source>Seldial refused the shortcut: %1</source>
        <translation>Seldial heeft de sneltoets geweigerd: %1</translation>
    </message>
    <message>
        <source>Standard output cannot be written.</source>
        <translation>Naar de standaarduitvoer kan niet worden geschreven.</translation>
    </message>
    <message>
        <source>&amp;Use this shortcut</source>
        <translation>Deze sneltoets &amp;gebruiken</translation>
    </message>
    <message>
        <source>&amp;Send to Seldial</source>
        <translation>Naar Seldial &amp;sturen</translation>
    </message>
    <message>
        <source>This key has no name, so the shortcut cannot be saved.</source>
        <translation>Deze toets heeft geen naam waaronder hij kan worden opgeslagen.</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>Op&amp;slaan</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Return</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Spatie</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Backspace</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <translation>Caps Lock</translation>
    </message>
    <message>
        <source>Num Lock</source>
        <translation>Num Lock</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Volume omhoog</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Volume omlaag</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Dempen</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Enter (num.)</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Insert</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Page Up</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>End</source>
        <translation>End</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Page Down</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Omlaag</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Omhoog</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>key %1</source>
        <translation>toets %1</translation>
    </message>
    <message>
        <source>Keypad %1</source>
        <translation>Numeriek %1</translation>
    </message>
</context>
<context>
    <name>NumberChooser</name>
    <message>
        <source>Call</source>
        <translation>Bellen</translation>
    </message>
    <message>
        <source>&amp;Which number do you want to call?</source>
        <translation>&amp;Welk nummer wilt u bellen?</translation>
    </message>
    <message>
        <source>&amp;Do you want to call this number?</source>
        <translation>&amp;Wilt u dit nummer bellen?</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Nummers</translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>&amp;Bellen</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>A&amp;nnuleren</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>there is no program</source>
        <translation>er is geen programma opgegeven</translation>
    </message>
    <message>
        <source>a quote is not closed, or nothing follows a backslash</source>
        <translation>een aanhalingsteken is niet gesloten of er volgt niets op een backslash</translation>
    </message>
    <message>
        <source>the program cannot be a part of the selection</source>
        <translation>het programma kan geen deel van de selectie zijn</translation>
    </message>
    <message>
        <source>seldial-uc could not be started.</source>
        <translation>seldial-uc kon niet worden gestart.</translation>
    </message>
    <message>
        <source>&amp;Start when I log in</source>
        <translation>Starten &amp;bij het aanmelden</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Nog niets</translation>
    </message>
    <message>
        <source>The application for tel: links</source>
        <translation>Het programma voor tel:-links</translation>
    </message>
    <message>
        <source>The application for sip: links</source>
        <translation>Het programma voor sip:-links</translation>
    </message>
    <message>
        <source>The application for callto: links</source>
        <translation>Het programma voor callto:-links</translation>
    </message>
    <message>
        <source>A program</source>
        <translation>Een programma</translation>
    </message>
    <message>
        <source>program --call {}</source>
        <translation>programma --call {}</translation>
    </message>
    <message>
        <source>&amp;Dial with</source>
        <translation>Bellen &amp;met</translation>
    </message>
    <message>
        <source>&amp;Program</source>
        <translation>&amp;Programma</translation>
    </message>
    <message>
        <source>C&amp;ountry of the numbers</source>
        <translation>&amp;Land van de nummers</translation>
    </message>
    <message>
        <source>Dial with</source>
        <translation>Bellen met</translation>
    </message>
    <message>
        <source>What calls the number that was selected.</source>
        <translation>Waarmee het geselecteerde nummer wordt gebeld.</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programma</translation>
    </message>
    <message>
        <source>{} stands for the number, {tel} for its tel: URI, {text} for the selected text.</source>
        <translation>{} staat voor het nummer, {tel} voor de tel:-URI ervan, {text} voor de geselecteerde tekst.</translation>
    </message>
    <message>
        <source>Country of the numbers</source>
        <translation>Land van de nummers</translation>
    </message>
    <message>
        <source>Two letters, such as NL: where numbers without a country code belong.</source>
        <translation>Twee letters, zoals NL: waar nummers zonder landnummer bij horen.</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Starten bij het aanmelden</translation>
    </message>
    <message>
        <source>Dials in every session from now on.</source>
        <translation>Belt vanaf nu in elke sessie.</translation>
    </message>
    <message>
        <source>The program cannot be run: %1.</source>
        <translation>Het programma kan niet worden uitgevoerd: %1.</translation>
    </message>
    <message>
        <source>Choose what to dial with first.</source>
        <translation>Kies eerst waarmee gebeld wordt.</translation>
    </message>
</context>
<context>
    <name>ShortcutWindow</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Opnemen</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Wissen</translation>
    </message>
    <message>
        <source>Seldial settings</source>
        <translation>Seldial-instellingen</translation>
    </message>
    <message>
        <source>Seldial shortcut</source>
        <translation>Seldial-sneltoets</translation>
    </message>
    <message>
        <source>Select a number anywhere, then press</source>
        <translation>Selecteer ergens een nummer en druk op</translation>
    </message>
    <message>
        <source>Click here and press a shortcut</source>
        <translation>Klik hier en druk op een sneltoets</translation>
    </message>
    <message>
        <source>&amp;Time to copy the selection</source>
        <translation>&amp;Tijd om de selectie te kopiëren</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuleren</translation>
    </message>
    <message>
        <source>Closes the window and changes nothing.</source>
        <translation>Sluit het venster en wijzigt niets.</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Sneltoets</translation>
    </message>
    <message>
        <source>Record a new shortcut</source>
        <translation>Een nieuwe sneltoets opnemen</translation>
    </message>
    <message>
        <source>Press the new shortcut afterwards. Return keeps it, Escape brings the old one back.</source>
        <translation>Druk daarna op de nieuwe sneltoets. Enter behoudt die, Esc zet de oude terug.</translation>
    </message>
    <message>
        <source>Clear the shortcut</source>
        <translation>De sneltoets wissen</translation>
    </message>
    <message>
        <source>Leaves no shortcut until one is recorded.</source>
        <translation>Er is dan geen sneltoets tot er een wordt opgenomen.</translation>
    </message>
    <message>
        <source>How long the other application gets to copy its selection, in milliseconds.</source>
        <translation>Hoelang de andere toepassing krijgt om de selectie te kopiëren, in milliseconden.</translation>
    </message>
    <message>
        <source>Time to copy the selection</source>
        <translation>Tijd om de selectie te kopiëren</translation>
    </message>
    <message>
        <source>Hands the shortcut over and closes the window.</source>
        <translation>Geeft de sneltoets door en sluit het venster.</translation>
    </message>
    <message>
        <source>No shortcut yet</source>
        <translation>Nog geen sneltoets</translation>
    </message>
    <message>
        <source>Press the new shortcut…</source>
        <translation>Druk op de nieuwe sneltoets…</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Bezig met opnemen</translation>
    </message>
    <message>
        <source>Return keeps the shortcut, Escape brings the old one back.</source>
        <translation>Enter behoudt de sneltoets, Esc zet de oude terug.</translation>
    </message>
    <message>
        <source>It works</source>
        <translation>Het werkt</translation>
    </message>
    <message>
        <source>The shortcut was not handed over</source>
        <translation>De sneltoets is niet doorgegeven</translation>
    </message>
    <message>
        <source>Try it here</source>
        <translation>Probeer het hier</translation>
    </message>
    <message>
        <source>Record a shortcut first: modifier keys, such as Ctrl and Alt, and one key.</source>
        <translation>Neem eerst een sneltoets op: combinatietoetsen, zoals Ctrl en Alt, en nog één toets.</translation>
    </message>
    <message>
        <source>One key is missing</source>
        <translation>Er ontbreekt een toets</translation>
    </message>
    <message>
        <source>Modifier keys alone cannot be a shortcut. Press them with one more key.</source>
        <translation>Combinatietoetsen alleen kunnen geen sneltoets zijn. Druk ze samen met nog een toets in.</translation>
    </message>
    <message>
        <source>This desktop cannot use it</source>
        <translation>Deze desktop kan hem niet gebruiken</translation>
    </message>
    <message>
        <source>The keyboard has no such key, or Seldial uses the combination itself to copy.</source>
        <translation>Het toetsenbord heeft deze toets niet, of Seldial gebruikt de combinatie zelf om te kopiëren.</translation>
    </message>
    <message>
        <source>Seldial uses this shortcut</source>
        <translation>Seldial gebruikt deze sneltoets</translation>
    </message>
    <message>
        <source>Press it and release it: this panel lights up, and nothing is dialled.</source>
        <translation>Druk hem in en laat los: dit vak licht op en er wordt niets gebeld.</translation>
    </message>
    <message>
        <source>Another program holds this shortcut</source>
        <translation>Een ander programma heeft deze sneltoets</translation>
    </message>
    <message>
        <source>If that program is Seldial, keep it. Otherwise record another one.</source>
        <translation>Als dat Seldial is, behoudt u hem. Neem anders een andere op.</translation>
    </message>
    <message>
        <source>Press the shortcut and release it: this panel lights up.</source>
        <translation>Druk de sneltoets in en laat los: dit vak licht op.</translation>
    </message>
    <message>
        <source>On Wayland this does not show whether the desktop allows it. Seldial reports that later.</source>
        <translation>Onder Wayland is dat geen teken dat het bureaublad hem toekent: dat meldt Seldial later.</translation>
    </message>
</context>
</TS>
