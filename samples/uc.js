// A UC client: starts Seldial, sets Ctrl+Alt+D, and prints each call until Ctrl-C or SIGTERM.
'use strict';
const { spawn } = require('node:child_process');
const fs = require('node:fs');
const net = require('node:net');
const os = require('node:os');
const path = require('node:path');
const readline = require('node:readline');

const SET_HOT_KEY = {
  command: 'SetHotKey',
  modifierCtrl: true,
  modifierAlt: true,
  virtualkey: 2, // the D key of a US keyboard
  readdelay: 500,
};

const folder = fs.mkdtempSync(path.join(process.env.XDG_RUNTIME_DIR || os.tmpdir(), 'uc-'));
const dialer = path.join(folder, 'dialer');

const seldial = spawn(process.argv[2] || 'seldial', ['-log', `dialerpipename=${dialer}`], {
  stdio: ['ignore', 'pipe', 'inherit'],
});

// One connection carries one command; its end ends the command.
function send(command) {
  net.connect(dialer).on('error', console.error).end(JSON.stringify(command));
}

function received(message) {
  if (message.command === 'MakeCall') {
    console.log(`call: ${message.number}`);
  } else if (message.result) {
    console.log('hot key is set');
  } else {
    console.error(`refused: ${message.failreason || message.message}`);
    seldial.kill();
  }
}

readline.createInterface({ input: seldial.stdout }).on('line', (line) => {
  if (line.startsWith('{')) received(JSON.parse(line));
  else if (line.includes('Unix socket server listen ok')) send(SET_HOT_KEY);
  else if (line.includes('Unix socket server listen failed')) seldial.kill();
});

for (const signal of ['SIGINT', 'SIGTERM']) process.on(signal, () => seldial.kill());

function end(status) {
  fs.rmSync(folder, { recursive: true, force: true });
  process.exitCode = status;
}

seldial.on('error', (error) => {
  console.error(error.message);
  end(1);
});
seldial.on('close', (status) => end(status === null ? 1 : status));
