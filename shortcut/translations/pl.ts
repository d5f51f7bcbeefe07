<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>CopyTestWindow</name>
    <message>
        <source>Seldial check</source>
        <translation>Kontrola Seldial</translation>
    </message>
    <message>
        <source>Seldial tries to copy this text.</source>
        <translation>Seldial próbuje skopiować ten tekst.</translation>
    </message>
</context>
<context>
    <name>Delivery</name>
    <message>
        <source>Seldial has not answered</source>
        <translation>Seldial nie odpowiedział</translation>
    </message>
    <message>
        <source>Seldial refused the shortcut: %1</source>
        <translation>Seldial odrzucił skrót: %1</translation>
    </message>
    <message>
        <source>Standard output cannot be written.</source>
        <translation>Nie można pisać na standardowe wyjście.</translation>
    </message>
    <message>
        <source>&amp;Use this shortcut</source>
        <translation>&amp;Użyj tego skrótu</translation>
    </message>
    <message>
        <source>&amp;Send to Seldial</source>
        <translation>&amp;Wyślij do Seldial</translation>
    </message>
    <message>
        <source>This key has no name, so the shortcut cannot be saved.</source>
        <translation>Ten klawisz nie ma nazwy, pod którą można go zapisać.</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>&amp;Zapisz</translation>
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
        <translation>Spacja</translation>
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
        <translation>Głośniej</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Ciszej</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Wycisz</translation>
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
        <translation>Strzałka w lewo</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Strzałka w prawo</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Strzałka w dół</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Strzałka w górę</translation>
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
        <translation>klawisz %1</translation>
    </message>
    <message>
        <source>Keypad %1</source>
        <translation>Klaw. num. %1</translation>
    </message>
</context>
<context>
    <name>NumberChooser</name>
    <message>
        <source>Call</source>
        <translation>Zadzwoń</translation>
    </message>
    <message>
        <source>&amp;Which number do you want to call?</source>
        <translation>&amp;Na który numer chcesz zadzwonić?</translation>
    </message>
    <message>
        <source>&amp;Do you want to call this number?</source>
        <translation>&amp;Czy chcesz zadzwonić na ten numer?</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Numery</translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>&amp;Zadzwoń</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>An&amp;uluj</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>there is no program</source>
        <translation>nie podano programu</translation>
    </message>
    <message>
        <source>a quote is not closed, or nothing follows a backslash</source>
        <translation>cudzysłów nie jest zamknięty lub po ukośniku wstecznym nic nie następuje</translation>
    </message>
    <message>
        <source>the program cannot be a part of the selection</source>
        <translation>program nie może być częścią zaznaczenia</translation>
    </message>
    <message>
        <source>seldial-uc could not be started.</source>
        <translation>Nie można uruchomić seldial-uc.</translation>
    </message>
    <message>
        <source>&amp;Start when I log in</source>
        <translation>Uruchamiaj przy l&amp;ogowaniu</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Jeszcze niczego</translation>
    </message>
    <message>
        <source>The application for tel: links</source>
        <translation>Aplikacja dla odnośników tel:</translation>
    </message>
    <message>
        <source>The application for sip: links</source>
        <translation>Aplikacja dla odnośników sip:</translation>
    </message>
    <message>
        <source>The application for callto: links</source>
        <translation>Aplikacja dla odnośników callto:</translation>
    </message>
    <message>
        <source>A program</source>
        <translation>Program</translation>
    </message>
    <message>
        <source>program --call {}</source>
        <translation>program --call {}</translation>
    </message>
    <message>
        <source>&amp;Dial with</source>
        <translation>&amp;Dzwoń przez</translation>
    </message>
    <message>
        <source>&amp;Program</source>
        <translation>&amp;Program</translation>
    </message>
    <message>
        <source>C&amp;ountry of the numbers</source>
        <translation>&amp;Kraj numerów</translation>
    </message>
    <message>
        <source>Dial with</source>
        <translation>Dzwoń przez</translation>
    </message>
    <message>
        <source>What calls the number that was selected.</source>
        <translation>Co dzwoni na zaznaczony numer.</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Program</translation>
    </message>
    <message>
        <source>{} stands for the number, {tel} for its tel: URI, {text} for the selected text.</source>
        <translation>{} oznacza numer, {tel} jego identyfikator URI tel:, {text} zaznaczony tekst.</translation>
    </message>
    <message>
        <source>Country of the numbers</source>
        <translation>Kraj numerów</translation>
    </message>
    <message>
        <source>Two letters, such as NL: where numbers without a country code belong.</source>
        <translation>Dwie litery, na przykład NL: kraj numerów bez numeru kierunkowego kraju.</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Uruchamiaj przy logowaniu</translation>
    </message>
    <message>
        <source>Dials in every session from now on.</source>
        <translation>Odtąd dzwoni w każdej sesji.</translation>
    </message>
    <message>
        <source>The program cannot be run: %1.</source>
        <translation>Nie można uruchomić programu: %1.</translation>
    </message>
    <message>
        <source>Choose what to dial with first.</source>
        <translation>Najpierw wybierz, czym dzwonić.</translation>
    </message>
</context>
<context>
    <name>ShortcutWindow</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Nagraj</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>Wy&amp;czyść</translation>
    </message>
    <message>
        <source>Seldial settings</source>
        <translation>Ustawienia Seldial</translation>
    </message>
    <message>
        <source>Seldial shortcut</source>
        <translation>Skrót Seldial</translation>
    </message>
    <message>
        <source>Select a number anywhere, then press</source>
        <translation>Zaznacz gdziekolwiek numer i naciśnij</translation>
    </message>
    <message>
        <source>Click here and press a shortcut</source>
        <translation>Kliknij tutaj i naciśnij skrót</translation>
    </message>
    <message>
        <source>&amp;Time to copy the selection</source>
        <translation>Czas na skopiowanie zaznaczen&amp;ia</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Anuluj</translation>
    </message>
    <message>
        <source>Closes the window and changes nothing.</source>
        <translation>Zamyka okno i niczego nie zmienia.</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Skrót</translation>
    </message>
    <message>
        <source>Record a new shortcut</source>
        <translation>Nagraj nowy skrót</translation>
    </message>
    <message>
        <source>Press the new shortcut afterwards. Return keeps it, Escape brings the old one back.</source>
        <translation>Następnie naciśnij nowy skrót. Enter go zachowuje, Esc przywraca poprzedni.</translation>
    </message>
    <message>
        <source>Clear the shortcut</source>
        <translation>Wyczyść skrót</translation>
    </message>
    <message>
        <source>Leaves no shortcut until one is recorded.</source>
        <translation>Nie ma wtedy skrótu, dopóki nie zostanie nagrany.</translation>
    </message>
    <message>
        <source>How long the other application gets to copy its selection, in milliseconds.</source>
        <translation>Ile czasu ma druga aplikacja na skopiowanie zaznaczenia, w milisekundach.</translation>
    </message>
    <message>
        <source>Time to copy the selection</source>
        <translation>Czas na skopiowanie zaznaczenia</translation>
    </message>
    <message>
        <source>Hands the shortcut over and closes the window.</source>
        <translation>Przekazuje skrót i zamyka okno.</translation>
    </message>
    <message>
        <source>No shortcut yet</source>
        <translation>Nie ma jeszcze skrótu</translation>
    </message>
    <message>
        <source>Press the new shortcut…</source>
        <translation>Naciśnij nowy skrót…</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Nagrywanie</translation>
    </message>
    <message>
        <source>Return keeps the shortcut, Escape brings the old one back.</source>
        <translation>Enter zachowuje skrót, Esc przywraca poprzedni.</translation>
    </message>
    <message>
        <source>It works</source>
        <translation>Działa</translation>
    </message>
    <message>
        <source>The shortcut was not handed over</source>
        <translation>Skrót nie został przekazany</translation>
    </message>
    <message>
        <source>Try it here</source>
        <translation>Wypróbuj tutaj</translation>
    </message>
    <message>
        <source>Record a shortcut first: modifier keys, such as Ctrl and Alt, and one key.</source>
        <translation>Najpierw nagraj skrót: klawisze modyfikujące, takie jak Ctrl i Alt, i jeden inny klawisz.</translation>
    </message>
    <message>
        <source>One key is missing</source>
        <translation>Brakuje klawisza</translation>
    </message>
    <message>
        <source>Modifier keys alone cannot be a shortcut. Press them with one more key.</source>
        <translation>Same klawisze modyfikujące nie mogą być skrótem. Naciśnij je z jeszcze jednym klawiszem.</translation>
    </message>
    <message>
        <source>This desktop cannot use it</source>
        <translation>Ten pulpit nie może go użyć</translation>
    </message>
    <message>
        <source>The keyboard has no such key, or Seldial uses the combination itself to copy.</source>
        <translation>Klawiatura nie ma takiego klawisza albo Seldial sam używa tej kombinacji do kopiowania.</translation>
    </message>
    <message>
        <source>Seldial uses this shortcut</source>
        <translation>Seldial używa tego skrótu</translation>
    </message>
    <message>
        <source>Press it and release it: this panel lights up, and nothing is dialled.</source>
        <translation>Naciśnij go i puść: to pole się zaświeci i nikt nie zostanie wywołany.</translation>
    </message>
    <message>
        <source>Another program holds this shortcut</source>
        <translation>Ten skrót zajął inny program</translation>
    </message>
    <message>
        <source>If that program is Seldial, keep it. Otherwise record another one.</source>
        <translation>Jeśli tym programem jest Seldial, zachowaj go. W przeciwnym razie nagraj inny.</translation>
    </message>
    <message>
        <source>Press the shortcut and release it: this panel lights up.</source>
        <translation>Naciśnij skrót i puść: to pole się zaświeci.</translation>
    </message>
    <message>
        <source>On Wayland this does not show whether the desktop allows it. Seldial reports that later.</source>
        <translation>W sesji Wayland nie oznacza to, że pulpit go przydzieli: Seldial zgłasza to później.</translation>
    </message>
</context>
</TS>
