// A UC client: starts Seldial, sets Ctrl+Alt+D, and prints each call until Ctrl-C or SIGTERM.
package main

import (
	"bufio"
	"encoding/json"
	"fmt"
	"log"
	"net"
	"os"
	"os/exec"
	"os/signal"
	"strings"
	"syscall"
)

// The hot key: virtualkey 2 is the D key of a US keyboard.
const setHotKey = `{"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2,"readdelay":500}`

type message struct {
	Command, Response, Number, FailReason, Message string
	Result                                         bool
}

// One connection carries one command; its end ends the command.
func send(path, command string) error {
	connection, err := net.Dial("unix", path)
	if err != nil {
		return err
	}
	defer connection.Close()
	_, err = connection.Write([]byte(command))
	return err
}

// Prints a message; false if it is a refusal.
func received(line string) bool {
	var m message
	if err := json.Unmarshal([]byte(line), &m); err != nil {
		log.Fatal(err)
	}
	switch {
	case m.Command == "MakeCall":
		fmt.Println("call:", m.Number)
	case m.Result:
		fmt.Println("hot key is set")
	default:
		fmt.Fprintln(os.Stderr, "refused:", m.FailReason+m.Message)
	}
	return m.Result || m.Command != ""
}

func run(program, path string) (int, error) {
	seldial := exec.Command(program, "-log", "dialerpipename="+path)
	seldial.Stderr = os.Stderr
	output, err := seldial.StdoutPipe()
	if err == nil {
		err = seldial.Start()
	}
	if err != nil {
		return 1, err
	}
	end := make(chan os.Signal, 2)
	signal.Notify(end, syscall.SIGINT, syscall.SIGTERM)
	go func() {
		for range end {
			seldial.Process.Signal(syscall.SIGTERM)
		}
	}()
	for lines := bufio.NewReader(output); ; {
		line, ended := lines.ReadString('\n')
		if ended != nil {
			break
		}
		refused := strings.HasPrefix(line, "{") && !received(line)
		if strings.Contains(line, "Unix socket server listen ok") {
			err = send(path, setHotKey)
		}
		if refused || err != nil || strings.Contains(line, "Unix socket server listen failed") {
			end <- syscall.SIGTERM
		}
	}
	seldial.Wait()
	return seldial.ProcessState.ExitCode(), err
}

func main() {
	program := append(os.Args[1:], "seldial")[0]
	folder, err := os.MkdirTemp(os.Getenv("XDG_RUNTIME_DIR"), "uc-")
	if err != nil {
		log.Fatal(err)
	}
	status, err := run(program, folder+"/dialer")
	os.RemoveAll(folder)
	if err != nil {
		log.Print(err)
	}
	os.Exit(status)
}
