// A clipboard manager as an extension of GNOME Shell, for scripts/test-desktops. It acts like
// clipboard_manager.py; its arguments are in the file "clipboard-manager" in the home folder.
import GLib from 'gi://GLib';
import Meta from 'gi://Meta';
import St from 'gi://St';

const CLIPBOARD = St.ClipboardType.CLIPBOARD;

export default class ClipboardManager {
    enable() {
        this.kept = '';
        this.selection = global.display.get_selection();
        this.handler = this.selection.connect('owner-changed', (_selection, type) => {
            if (type === Meta.SelectionType.SELECTION_CLIPBOARD && !this.taking) this.changed();
        });
    }

    disable() {
        this.selection.disconnect(this.handler);
    }

    arguments() {
        const path = GLib.build_filenamev([GLib.get_home_dir(), 'clipboard-manager']);
        if (!GLib.file_test(path, GLib.FileTest.EXISTS)) return [];
        return new TextDecoder().decode(GLib.file_get_contents(path)[1]).split(' ');
    }

    changed() {
        const [delay, ...modes] = this.arguments();
        const types = this.selection.get_mimetypes(Meta.SelectionType.SELECTION_CLIPBOARD);
        if (types.some(type => type.startsWith('text/plain'))) {
            St.Clipboard.get_default().get_text(CLIPBOARD, (_clipboard, text) => {
                this.kept = text || this.kept;
                this.takeLater(delay, modes.includes(text ? 'keep' : 'refill'));
            });
        } else {
            this.takeLater(delay, modes.includes('refill'));
        }
    }

    takeLater(delay, wanted) {
        if (!wanted || !this.kept) return;
        GLib.timeout_add(GLib.PRIORITY_DEFAULT, Number(delay), () => {
            this.taking = true;
            St.Clipboard.get_default().set_text(CLIPBOARD, this.kept);
            this.taking = false;
            return GLib.SOURCE_REMOVE;
        });
    }
}
