<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>CopyTestWindow</name>
    <message>
        <source>Seldial check</source>
        <translation>Comprobación de Seldial</translation>
    </message>
    <message>
        <source>Seldial tries to copy this text.</source>
        <translation>Seldial intenta copiar este texto.</translation>
    </message>
</context>
<context>
    <name>Delivery</name>
    <message>
        <source>Seldial has not answered</source>
        <translation>Seldial no ha respondido</translation>
    </message>
    <message>
        <source>Seldial refused the shortcut: %1</source>
        <translation>Seldial ha rechazado el atajo: %1</translation>
    </message>
    <message>
        <source>Standard output cannot be written.</source>
        <translation>No se puede escribir en la salida estándar.</translation>
    </message>
    <message>
        <source>&amp;Use this shortcut</source>
        <translation>&amp;Usar este atajo</translation>
    </message>
    <message>
        <source>&amp;Send to Seldial</source>
        <translation>&amp;Enviar a Seldial</translation>
    </message>
    <message>
        <source>This key has no name, so the shortcut cannot be saved.</source>
        <translation>Esta tecla no tiene un nombre con el que guardarla.</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>Guar&amp;dar</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Return</source>
        <translation>Intro</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espacio</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Retroceso</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <translation>Bloq Mayús</translation>
    </message>
    <message>
        <source>Num Lock</source>
        <translation>Bloq Num</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Subir volumen</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Bajar volumen</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silencio</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Intro num.</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Insert</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Re Pág</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supr</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Av Pág</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Izquierda</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Derecha</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Abajo</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Arriba</translation>
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
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>key %1</source>
        <translation>tecla %1</translation>
    </message>
    <message>
        <source>Keypad %1</source>
        <translation>Teclado num. %1</translation>
    </message>
</context>
<context>
    <name>NumberChooser</name>
    <message>
        <source>Call</source>
        <translation>Llamar</translation>
    </message>
    <message>
        <source>&amp;Which number do you want to call?</source>
        <translation>¿A &amp;qué número quiere llamar?</translation>
    </message>
    <message>
        <source>&amp;Do you want to call this number?</source>
        <translation>¿&amp;Quiere llamar a este número?</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Números</translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>&amp;Llamar</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>&amp;Cancelar</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>there is no program</source>
        <translation>no se ha indicado ningún programa</translation>
    </message>
    <message>
        <source>a quote is not closed, or nothing follows a backslash</source>
        <translation>falta cerrar unas comillas o no hay nada tras una barra invertida</translation>
    </message>
    <message>
        <source>the program cannot be a part of the selection</source>
        <translation>el programa no puede ser parte de la selección</translation>
    </message>
    <message>
        <source>seldial-uc could not be started.</source>
        <translation>No se ha podido iniciar seldial-uc.</translation>
    </message>
    <message>
        <source>&amp;Start when I log in</source>
        <translation>&amp;Iniciar al abrir la sesión</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Nada todavía</translation>
    </message>
    <message>
        <source>The application for tel: links</source>
        <translation>La aplicación para enlaces tel:</translation>
    </message>
    <message>
        <source>The application for sip: links</source>
        <translation>La aplicación para enlaces sip:</translation>
    </message>
    <message>
        <source>The application for callto: links</source>
        <translation>La aplicación para enlaces callto:</translation>
    </message>
    <message>
        <source>A program</source>
        <translation>Un programa</translation>
    </message>
    <message>
        <source>program --call {}</source>
        <translation>programa --call {}</translation>
    </message>
    <message>
        <source>&amp;Dial with</source>
        <translation>&amp;Llamar con</translation>
    </message>
    <message>
        <source>&amp;Program</source>
        <translation>&amp;Programa</translation>
    </message>
    <message>
        <source>C&amp;ountry of the numbers</source>
        <translation>Paí&amp;s de los números</translation>
    </message>
    <message>
        <source>Dial with</source>
        <translation>Llamar con</translation>
    </message>
    <message>
        <source>What calls the number that was selected.</source>
        <translation>Lo que llama al número seleccionado.</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programa</translation>
    </message>
    <message>
        <source>{} stands for the number, {tel} for its tel: URI, {text} for the selected text.</source>
        <translation>{} es el número, {tel} su URI tel:, {text} el texto seleccionado.</translation>
    </message>
    <message>
        <source>Country of the numbers</source>
        <translation>País de los números</translation>
    </message>
    <message>
        <source>Two letters, such as NL: where numbers without a country code belong.</source>
        <translation>Dos letras, como NL: el país de los números sin prefijo internacional.</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Iniciar al abrir la sesión</translation>
    </message>
    <message>
        <source>Dials in every session from now on.</source>
        <translation>Llama en todas las sesiones a partir de ahora.</translation>
    </message>
    <message>
        <source>The program cannot be run: %1.</source>
        <translation>No se puede ejecutar el programa: %1.</translation>
    </message>
    <message>
        <source>Choose what to dial with first.</source>
        <translation>Elija primero con qué llamar.</translation>
    </message>
</context>
<context>
    <name>ShortcutWindow</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Grabar</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Borrar</translation>
    </message>
    <message>
        <source>Seldial settings</source>
        <translation>Ajustes de Seldial</translation>
    </message>
    <message>
        <source>Seldial shortcut</source>
        <translation>Atajo de Seldial</translation>
    </message>
    <message>
        <source>Select a number anywhere, then press</source>
        <translation>Seleccione un número en cualquier lugar y pulse</translation>
    </message>
    <message>
        <source>Click here and press a shortcut</source>
        <translation>Haga clic aquí y pulse un atajo</translation>
    </message>
    <message>
        <source>&amp;Time to copy the selection</source>
        <translation>&amp;Tiempo para copiar la selección</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message>
        <source>Closes the window and changes nothing.</source>
        <translation>Cierra la ventana sin cambiar nada.</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Atajo</translation>
    </message>
    <message>
        <source>Record a new shortcut</source>
        <translation>Grabar un atajo nuevo</translation>
    </message>
    <message>
        <source>Press the new shortcut afterwards. Return keeps it, Escape brings the old one back.</source>
        <translation>Pulse después el atajo nuevo. Intro lo conserva, Esc recupera el anterior.</translation>
    </message>
    <message>
        <source>Clear the shortcut</source>
        <translation>Borrar el atajo</translation>
    </message>
    <message>
        <source>Leaves no shortcut until one is recorded.</source>
        <translation>No queda ningún atajo hasta que se grabe uno.</translation>
    </message>
    <message>
        <source>How long the other application gets to copy its selection, in milliseconds.</source>
        <translation>Cuánto tiempo tiene la otra aplicación para copiar su selección, en milisegundos.</translation>
    </message>
    <message>
        <source>Time to copy the selection</source>
        <translation>Tiempo para copiar la selección</translation>
    </message>
    <message>
        <source>Hands the shortcut over and closes the window.</source>
        <translation>Entrega el atajo y cierra la ventana.</translation>
    </message>
    <message>
        <source>No shortcut yet</source>
        <translation>Todavía no hay ningún atajo</translation>
    </message>
    <message>
        <source>Press the new shortcut…</source>
        <translation>Pulse el atajo nuevo…</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Grabando</translation>
    </message>
    <message>
        <source>Return keeps the shortcut, Escape brings the old one back.</source>
        <translation>Intro conserva el atajo, Esc recupera el anterior.</translation>
    </message>
    <message>
        <source>It works</source>
        <translation>Funciona</translation>
    </message>
    <message>
        <source>The shortcut was not handed over</source>
        <translation>No se ha entregado el atajo</translation>
    </message>
    <message>
        <source>Try it here</source>
        <translation>Pruébelo aquí</translation>
    </message>
    <message>
        <source>Record a shortcut first: modifier keys, such as Ctrl and Alt, and one key.</source>
        <translation>Grabe primero un atajo: teclas modificadoras, como Ctrl y Alt, y una tecla más.</translation>
    </message>
    <message>
        <source>One key is missing</source>
        <translation>Falta una tecla</translation>
    </message>
    <message>
        <source>Modifier keys alone cannot be a shortcut. Press them with one more key.</source>
        <translation>Las teclas modificadoras solas no pueden ser un atajo. Púlselas con otra tecla.</translation>
    </message>
    <message>
        <source>This desktop cannot use it</source>
        <translation>Este escritorio no puede usarlo</translation>
    </message>
    <message>
        <source>The keyboard has no such key, or Seldial uses the combination itself to copy.</source>
        <translation>El teclado no tiene esa tecla o Seldial usa esa combinación para copiar.</translation>
    </message>
    <message>
        <source>Seldial uses this shortcut</source>
        <translation>Seldial usa este atajo</translation>
    </message>
    <message>
        <source>Press it and release it: this panel lights up, and nothing is dialled.</source>
        <translation>Púlselo y suéltelo: este panel se ilumina y no se llama a nadie.</translation>
    </message>
    <message>
        <source>Another program holds this shortcut</source>
        <translation>Otro programa tiene este atajo</translation>
    </message>
    <message>
        <source>If that program is Seldial, keep it. Otherwise record another one.</source>
        <translation>Si ese programa es Seldial, consérvelo. Si no, grabe otro.</translation>
    </message>
    <message>
        <source>Press the shortcut and release it: this panel lights up.</source>
        <translation>Pulse el atajo y suéltelo: este panel se ilumina.</translation>
    </message>
    <message>
        <source>On Wayland this does not show whether the desktop allows it. Seldial reports that later.</source>
        <translation>En Wayland eso no indica que el escritorio lo conceda: Seldial lo comunica después.</translation>
    </message>
</context>
</TS>
