<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CopyTestWindow</name>
    <message>
        <source>Seldial check</source>
        <translation>Vérification de Seldial</translation>
    </message>
    <message>
        <source>Seldial tries to copy this text.</source>
        <translation>Seldial essaie de copier ce texte.</translation>
    </message>
</context>
<context>
    <name>Delivery</name>
    <message>
        <source>Seldial has not answered</source>
        <translation>Seldial n’a pas répondu</translation>
    </message>
    <message>
        <source>Seldial refused the shortcut: %1</source>
        <translation>Seldial a refusé le raccourci : %1</translation>
    </message>
    <message>
        <source>Standard output cannot be written.</source>
        <translation>Impossible d’écrire sur la sortie standard.</translation>
    </message>
    <message>
        <source>&amp;Use this shortcut</source>
        <translation>&amp;Utiliser ce raccourci</translation>
    </message>
    <message>
        <source>&amp;Send to Seldial</source>
        <translation>En&amp;voyer à Seldial</translation>
    </message>
    <message>
        <source>This key has no name, so the shortcut cannot be saved.</source>
        <translation>Cette touche n’a pas de nom sous lequel l’enregistrer.</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>&amp;Enregistrer</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Return</source>
        <translation>Entrée</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espace</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Retour arrière</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Échap</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <translation>Verr. maj.</translation>
    </message>
    <message>
        <source>Num Lock</source>
        <translation>Verr. num.</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Augmenter le volume</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Baisser le volume</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Muet</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Entrée num.</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Inser</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Page préc.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Suppr</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Page suiv.</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Gauche</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Droite</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Bas</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Haut</translation>
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
        <translation>Maj</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>key %1</source>
        <translation>touche %1</translation>
    </message>
    <message>
        <source>Keypad %1</source>
        <translation>Pavé num. %1</translation>
    </message>
</context>
<context>
    <name>NumberChooser</name>
    <message>
        <source>Call</source>
        <translation>Appeler</translation>
    </message>
    <message>
        <source>&amp;Which number do you want to call?</source>
        <translation>&amp;Quel numéro voulez-vous appeler ?</translation>
    </message>
    <message>
        <source>&amp;Do you want to call this number?</source>
        <translation>&amp;Voulez-vous appeler ce numéro ?</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Numéros</translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>&amp;Appeler</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>Annule&amp;r</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>there is no program</source>
        <translation>aucun programme n’est indiqué</translation>
    </message>
    <message>
        <source>a quote is not closed, or nothing follows a backslash</source>
        <translation>un guillemet n’est pas fermé ou rien ne suit une barre oblique inverse</translation>
    </message>
    <message>
        <source>the program cannot be a part of the selection</source>
        <translation>le programme ne peut pas être une partie de la sélection</translation>
    </message>
    <message>
        <source>seldial-uc could not be started.</source>
        <translation>seldial-uc n’a pas pu être lancé.</translation>
    </message>
    <message>
        <source>&amp;Start when I log in</source>
        <translation>&amp;Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Rien pour l’instant</translation>
    </message>
    <message>
        <source>The application for tel: links</source>
        <translation>L’application des liens tel:</translation>
    </message>
    <message>
        <source>The application for sip: links</source>
        <translation>L’application des liens sip:</translation>
    </message>
    <message>
        <source>The application for callto: links</source>
        <translation>L’application des liens callto:</translation>
    </message>
    <message>
        <source>A program</source>
        <translation>Un programme</translation>
    </message>
    <message>
        <source>program --call {}</source>
        <translation>programme --call {}</translation>
    </message>
    <message>
        <source>&amp;Dial with</source>
        <translation>Appeler a&amp;vec</translation>
    </message>
    <message>
        <source>&amp;Program</source>
        <translation>&amp;Programme</translation>
    </message>
    <message>
        <source>C&amp;ountry of the numbers</source>
        <translation>Pa&amp;ys des numéros</translation>
    </message>
    <message>
        <source>Dial with</source>
        <translation>Appeler avec</translation>
    </message>
    <message>
        <source>What calls the number that was selected.</source>
        <translation>Ce qui appelle le numéro sélectionné.</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>{} stands for the number, {tel} for its tel: URI, {text} for the selected text.</source>
        <translation>{} représente le numéro, {tel} son URI tel:, {text} le texte sélectionné.</translation>
    </message>
    <message>
        <source>Country of the numbers</source>
        <translation>Pays des numéros</translation>
    </message>
    <message>
        <source>Two letters, such as NL: where numbers without a country code belong.</source>
        <translation>Deux lettres, par exemple NL : le pays des numéros sans indicatif.</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>Dials in every session from now on.</source>
        <translation>Appelle dans toutes les sessions à partir de maintenant.</translation>
    </message>
    <message>
        <source>The program cannot be run: %1.</source>
        <translation>Le programme ne peut pas être exécuté : %1.</translation>
    </message>
    <message>
        <source>Choose what to dial with first.</source>
        <translation>Choisissez d’abord avec quoi appeler.</translation>
    </message>
</context>
<context>
    <name>ShortcutWindow</name>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Capturer</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>E&amp;ffacer</translation>
    </message>
    <message>
        <source>Seldial settings</source>
        <translation>Paramètres de Seldial</translation>
    </message>
    <message>
        <source>Seldial shortcut</source>
        <translation>Raccourci de Seldial</translation>
    </message>
    <message>
        <source>Select a number anywhere, then press</source>
        <translation>Sélectionnez un numéro n’importe où, puis appuyez sur</translation>
    </message>
    <message>
        <source>Click here and press a shortcut</source>
        <translation>Cliquez ici et appuyez sur un raccourci</translation>
    </message>
    <message>
        <source>&amp;Time to copy the selection</source>
        <translation>&amp;Temps pour copier la sélection</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>Closes the window and changes nothing.</source>
        <translation>Ferme la fenêtre sans rien changer.</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Raccourci</translation>
    </message>
    <message>
        <source>Record a new shortcut</source>
        <translation>Capturer un nouveau raccourci</translation>
    </message>
    <message>
        <source>Press the new shortcut afterwards. Return keeps it, Escape brings the old one back.</source>
        <translation>Appuyez ensuite sur le nouveau raccourci. Entrée le garde, Échap rétablit l’ancien.</translation>
    </message>
    <message>
        <source>Clear the shortcut</source>
        <translation>Effacer le raccourci</translation>
    </message>
    <message>
        <source>Leaves no shortcut until one is recorded.</source>
        <translation>Il n’y a plus de raccourci tant qu’aucun n’est capturé.</translation>
    </message>
    <message>
        <source>How long the other application gets to copy its selection, in milliseconds.</source>
        <translation>Le temps dont dispose l’autre application pour copier sa sélection, en millisecondes.</translation>
    </message>
    <message>
        <source>Time to copy the selection</source>
        <translation>Temps pour copier la sélection</translation>
    </message>
    <message>
        <source>Hands the shortcut over and closes the window.</source>
        <translation>Transmet le raccourci et ferme la fenêtre.</translation>
    </message>
    <message>
        <source>No shortcut yet</source>
        <translation>Pas encore de raccourci</translation>
    </message>
    <message>
        <source>Press the new shortcut…</source>
        <translation>Appuyez sur le nouveau raccourci…</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Capture en cours</translation>
    </message>
    <message>
        <source>Return keeps the shortcut, Escape brings the old one back.</source>
        <translation>Entrée garde le raccourci, Échap rétablit l’ancien.</translation>
    </message>
    <message>
        <source>It works</source>
        <translation>Cela fonctionne</translation>
    </message>
    <message>
        <source>The shortcut was not handed over</source>
        <translation>Le raccourci n’a pas été transmis</translation>
    </message>
    <message>
        <source>Try it here</source>
        <translation>Essayez-le ici</translation>
    </message>
    <message>
        <source>Record a shortcut first: modifier keys, such as Ctrl and Alt, and one key.</source>
        <translation>Capturez d’abord un raccourci : des touches de modification, comme Ctrl et Alt, et une autre touche.</translation>
    </message>
    <message>
        <source>One key is missing</source>
        <translation>Il manque une touche</translation>
    </message>
    <message>
        <source>Modifier keys alone cannot be a shortcut. Press them with one more key.</source>
        <translation>Des touches de modification seules ne peuvent pas être un raccourci. Ajoutez-y une autre touche.</translation>
    </message>
    <message>
        <source>This desktop cannot use it</source>
        <translation>Ce bureau ne peut pas l’utiliser</translation>
    </message>
    <message>
        <source>The keyboard has no such key, or Seldial uses the combination itself to copy.</source>
        <translation>Le clavier n’a pas cette touche, ou Seldial utilise lui-même cette combinaison pour copier.</translation>
    </message>
    <message>
        <source>Seldial uses this shortcut</source>
        <translation>Seldial utilise ce raccourci</translation>
    </message>
    <message>
        <source>Press it and release it: this panel lights up, and nothing is dialled.</source>
        <translation>Appuyez puis relâchez : ce panneau s’allume, et rien n’est composé.</translation>
    </message>
    <message>
        <source>Another program holds this shortcut</source>
        <translation>Un autre programme détient ce raccourci</translation>
    </message>
    <message>
        <source>If that program is Seldial, keep it. Otherwise record another one.</source>
        <translation>Si ce programme est Seldial, gardez-le. Sinon, capturez-en un autre.</translation>
    </message>
    <message>
        <source>Press the shortcut and release it: this panel lights up.</source>
        <translation>Appuyez sur le raccourci puis relâchez : ce panneau s’allume.</translation>
    </message>
    <message>
        <source>On Wayland this does not show whether the desktop allows it. Seldial reports that later.</source>
        <translation>Sous Wayland, cela n’indique pas que le bureau l’accorde : Seldial le signale ensuite.</translation>
    </message>
</context>
</TS>
