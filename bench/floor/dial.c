// The floor for dialling: a minimal XCB program that does each step once and checks nothing. It
// grabs Control, Alt and the key. When the key is released it takes CLIPBOARD, types
// Control+Insert, waits the delay, asks the new owner of CLIPBOARD for its text and writes that to
// the client's socket. It ignores the lock keys, modifiers that are still held, large texts,
// terminals, and applications that do not copy.
//
// Usage: dial CLIENT_SOCKET KEY_CODE DELAY_MS
#include <poll.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

enum { KEY_CONTROL = 37, KEY_INSERT = 118 };

static xcb_connection_t* x;
static xcb_window_t root, window;
static xcb_atom_t clipboard, utf8_string, property;
static struct sockaddr_un client_address = {.sun_family = AF_UNIX};

static xcb_atom_t atom(const char* name) {
  const xcb_intern_atom_cookie_t cookie = xcb_intern_atom(x, 0, (uint16_t)strlen(name), name);
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(x, cookie, NULL);
  const xcb_atom_t result = reply ? reply->atom : XCB_ATOM_NONE;
  free(reply);
  return result;
}

static void type(uint8_t event, uint8_t key) {
  xcb_test_fake_input(x, event, key, XCB_CURRENT_TIME, root, 0, 0, 0);
}

static void copy_selection(void) {
  xcb_set_selection_owner(x, window, clipboard, XCB_CURRENT_TIME);
  type(XCB_KEY_PRESS, KEY_CONTROL);
  type(XCB_KEY_PRESS, KEY_INSERT);
  type(XCB_KEY_RELEASE, KEY_INSERT);
  type(XCB_KEY_RELEASE, KEY_CONTROL);
  xcb_flush(x);
}

static void wait_for(unsigned milliseconds) {
  const struct timespec delay = {milliseconds / 1000, (long)(milliseconds % 1000) * 1000000};
  clock_nanosleep(CLOCK_MONOTONIC, 0, &delay, NULL);
}

// Whether the clipboard's owner answered; false also if this program still owns it.
static bool await_text(void) {
  xcb_convert_selection(x, window, clipboard, utf8_string, property, XCB_CURRENT_TIME);
  xcb_flush(x);
  for (xcb_generic_event_t* event; (event = xcb_wait_for_event(x)) != NULL;) {
    const uint8_t kind = event->response_type & 0x7F;
    const bool answered = ((xcb_selection_notify_event_t*)event)->property == property;
    free(event);
    if (kind == XCB_SELECTION_REQUEST) return false;
    if (kind == XCB_SELECTION_NOTIFY) return answered;
  }
  exit(1);
}

static void send_text(void) {
  const xcb_get_property_cookie_t cookie =
      xcb_get_property(x, 1, window, property, utf8_string, 0, 1024);
  xcb_get_property_reply_t* text = xcb_get_property_reply(x, cookie, NULL);
  if (text == NULL) exit(1);
  char message[8192];
  const int length =
      snprintf(message, sizeof message, "{\"request\":\"MakeCall\",\"number\":\"%.*s\"}",
               xcb_get_property_value_length(text), (char*)xcb_get_property_value(text));
  free(text);
  const int client = socket(AF_UNIX, SOCK_STREAM, 0);
  if (connect(client, (struct sockaddr*)&client_address, sizeof client_address) != 0 ||
      write(client, message, (size_t)length) < 0) {
    perror("message");
  }
  close(client);
}

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  snprintf(client_address.sun_path, sizeof client_address.sun_path, "%s", argv[1]);
  const uint8_t key = (uint8_t)atoi(argv[2]);
  const unsigned delay = (unsigned)atoi(argv[3]);

  x = xcb_connect(NULL, NULL);
  if (xcb_connection_has_error(x)) return 1;
  root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
  window = xcb_generate_id(x);
  xcb_create_window(x, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, NULL);
  clipboard = atom("CLIPBOARD");
  utf8_string = atom("UTF8_STRING");
  property = atom("DIALED_TEXT");
  xcb_grab_key(x, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, key, XCB_GRAB_MODE_ASYNC,
               XCB_GRAB_MODE_ASYNC);
  xcb_flush(x);
  for (xcb_generic_event_t* event; (event = xcb_wait_for_event(x)) != NULL; free(event)) {
    // While the key is down, the grab also reports the release of the modifiers.
    if ((event->response_type & 0x7F) != XCB_KEY_RELEASE) continue;
    if (((xcb_key_release_event_t*)event)->detail != key) continue;
    copy_selection();
    wait_for(delay);
    if (await_text()) send_text();
  }
  return 1;
}
