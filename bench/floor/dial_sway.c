// The floor of dialling under sway: a bare program that does each step once and checks nothing. It
// binds Control, Alt and the key by sway's socket. When the key is released it takes the clipboard,
// types Control+Insert, waits the delay, asks the new owner of the clipboard for its text and
// writes that to the client's socket. It ignores reloads, binding modes, large texts, terminals,
// and applications that do not copy.
//
// Usage: dial_sway CLIENT_SOCKET KEY DELAY_MS; the key is an evdev code.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>
#include <wayland-client.h>

#include "virtual-keyboard-unstable-v1-client.h"
#include "wlr-data-control-unstable-v1-client.h"

enum { KEY_CONTROL = 29, KEY_INSERT = 110, MASK_CONTROL = 4, FIRST_KEY = 8 };
enum { RUN_COMMAND = 0, SUBSCRIBE = 2 };

static struct wl_display* display;
static struct wl_seat* seat;
static struct zwlr_data_control_manager_v1* manager;
static struct zwlr_data_control_device_v1* device;
static struct zwlr_data_control_offer_v1* selection;
static struct zwlr_data_control_source_v1* source;  // ours, while nobody else has copied
static struct zwp_virtual_keyboard_manager_v1* keyboards;
static struct zwp_virtual_keyboard_v1* keyboard;
static struct sockaddr_un client_address = {.sun_family = AF_UNIX};

static int connect_to(const struct sockaddr_un* address) {
  const int number = socket(AF_UNIX, SOCK_STREAM, 0);
  if (connect(number, (const struct sockaddr*)address, sizeof *address) != 0) perror("connect");
  return number;
}

static void read_exactly(int number, void* buffer, size_t size) {
  for (size_t have = 0; have < size;) {
    const ssize_t part = read(number, (char*)buffer + have, size - have);
    if (part <= 0) exit(1);
    have += (size_t)part;
  }
}

// The content of the next message, up to its end or that of the buffer.
static const char* next_message(int sway) {
  static char content[8192];
  char header[14];
  uint32_t size = 0;
  read_exactly(sway, header, sizeof header);
  memcpy(&size, header + 6, sizeof size);
  if (size >= sizeof content) exit(1);
  read_exactly(sway, content, size);
  content[size] = '\0';
  return content;
}

static void ask_sway(int sway, uint32_t type, const char* content) {
  char message[1024] = "i3-ipc";
  const uint32_t size = (uint32_t)strlen(content);
  memcpy(message + 6, &size, sizeof size);
  memcpy(message + 10, &type, sizeof type);
  memcpy(message + 14, content, size);
  if (write(sway, message, 14 + size) < 0) exit(1);
  next_message(sway);
}

static int bind_hot_key(unsigned key) {
  struct sockaddr_un address = {.sun_family = AF_UNIX};
  snprintf(address.sun_path, sizeof address.sun_path, "%s", getenv("SWAYSOCK"));
  const int sway = connect_to(&address);
  char commands[256];
  snprintf(commands, sizeof commands,
           "bindcode --no-warn --no-repeat Ctrl+Mod1+%u nop floor-pressed; "
           "bindcode --no-warn --release Ctrl+Mod1+%u nop floor-released",
           key + FIRST_KEY, key + FIRST_KEY);
  ask_sway(sway, RUN_COMMAND, commands);
  ask_sway(sway, SUBSCRIBE, "[\"binding\"]");
  return sway;
}

static void ignore_offer_type(void* data, struct zwlr_data_control_offer_v1* offer,
                              const char* type) {
  (void)data, (void)offer, (void)type;
}
static const struct zwlr_data_control_offer_v1_listener offer_listener = {ignore_offer_type};

static void take_offer(void* data, struct zwlr_data_control_device_v1* self,
                       struct zwlr_data_control_offer_v1* offer) {
  (void)data, (void)self;
  zwlr_data_control_offer_v1_add_listener(offer, &offer_listener, NULL);
}
static void take_selection(void* data, struct zwlr_data_control_device_v1* self,
                           struct zwlr_data_control_offer_v1* offer) {
  (void)data, (void)self;
  if (selection != NULL) zwlr_data_control_offer_v1_destroy(selection);
  selection = offer;
}
static void ignore_end(void* data, struct zwlr_data_control_device_v1* self) {
  (void)data, (void)self;
}
static void ignore_primary(void* data, struct zwlr_data_control_device_v1* self,
                           struct zwlr_data_control_offer_v1* offer) {
  (void)data, (void)self, (void)offer;  // not sent in version 1
}
static const struct zwlr_data_control_device_v1_listener device_listener = {
    take_offer, take_selection, ignore_end, ignore_primary};

static void refuse_text(void* data, struct zwlr_data_control_source_v1* self, const char* type,
                        int32_t pipe) {
  (void)data, (void)self, (void)type;
  close(pipe);
}
static void lose_source(void* data, struct zwlr_data_control_source_v1* self) {
  (void)data;
  zwlr_data_control_source_v1_destroy(self);
  if (self == source) source = NULL;
}
static const struct zwlr_data_control_source_v1_listener source_listener = {refuse_text,
                                                                            lose_source};

static void use_keymap(void* data, struct wl_keyboard* self, uint32_t format, int32_t file,
                       uint32_t size) {
  (void)data, (void)self;
  zwp_virtual_keyboard_v1_keymap(keyboard, format, file, size);
  close(file);
}
static void ignore_enter(void* data, struct wl_keyboard* self, uint32_t serial,
                         struct wl_surface* surface, struct wl_array* keys) {
  (void)data, (void)self, (void)serial, (void)surface, (void)keys;
}
static void ignore_leave(void* data, struct wl_keyboard* self, uint32_t serial,
                         struct wl_surface* surface) {
  (void)data, (void)self, (void)serial, (void)surface;
}
static void ignore_key(void* data, struct wl_keyboard* self, uint32_t serial, uint32_t time,
                       uint32_t key, uint32_t state) {
  (void)data, (void)self, (void)serial, (void)time, (void)key, (void)state;
}
static void ignore_modifiers(void* data, struct wl_keyboard* self, uint32_t serial, uint32_t down,
                             uint32_t latched, uint32_t locked, uint32_t group) {
  (void)data, (void)self, (void)serial, (void)down, (void)latched, (void)locked, (void)group;
}
static const struct wl_keyboard_listener keyboard_listener = {.keymap = use_keymap,
                                                              .enter = ignore_enter,
                                                              .leave = ignore_leave,
                                                              .key = ignore_key,
                                                              .modifiers = ignore_modifiers};

static void global_appeared(void* data, struct wl_registry* registry, uint32_t name,
                            const char* interface, uint32_t version) {
  (void)data, (void)version;
  if (strcmp(interface, wl_seat_interface.name) == 0)
    seat = wl_registry_bind(registry, name, &wl_seat_interface, 1);
  if (strcmp(interface, zwlr_data_control_manager_v1_interface.name) == 0)
    manager = wl_registry_bind(registry, name, &zwlr_data_control_manager_v1_interface, 1);
  if (strcmp(interface, zwp_virtual_keyboard_manager_v1_interface.name) == 0)
    keyboards = wl_registry_bind(registry, name, &zwp_virtual_keyboard_manager_v1_interface, 1);
}
static void global_gone(void* data, struct wl_registry* registry, uint32_t name) {
  (void)data, (void)registry, (void)name;
}
static const struct wl_registry_listener registry_listener = {global_appeared, global_gone};

static void open_display(void) {
  display = wl_display_connect(NULL);
  if (display == NULL) exit(1);
  wl_registry_add_listener(wl_display_get_registry(display), &registry_listener, NULL);
  wl_display_roundtrip(display);
  if (seat == NULL || manager == NULL || keyboards == NULL) exit(1);
  device = zwlr_data_control_manager_v1_get_data_device(manager, seat);
  zwlr_data_control_device_v1_add_listener(device, &device_listener, NULL);
  keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards, seat);
  struct wl_keyboard* seat_keyboard = wl_seat_get_keyboard(seat);
  wl_keyboard_add_listener(seat_keyboard, &keyboard_listener, NULL);
  wl_display_roundtrip(display);
  wl_keyboard_destroy(seat_keyboard);  // its next keymap is the same
}

static void copy_selection(void) {
  source = zwlr_data_control_manager_v1_create_data_source(manager);
  zwlr_data_control_source_v1_add_listener(source, &source_listener, NULL);
  zwlr_data_control_device_v1_set_selection(device, source);
  zwp_virtual_keyboard_v1_key(keyboard, 0, KEY_CONTROL, 1);
  zwp_virtual_keyboard_v1_modifiers(keyboard, MASK_CONTROL, 0, 0, 0);
  zwp_virtual_keyboard_v1_key(keyboard, 0, KEY_INSERT, 1);
  zwp_virtual_keyboard_v1_key(keyboard, 0, KEY_INSERT, 0);
  zwp_virtual_keyboard_v1_key(keyboard, 0, KEY_CONTROL, 0);
  zwp_virtual_keyboard_v1_modifiers(keyboard, 0, 0, 0, 0);
  wl_display_flush(display);
}

static void wait_for(unsigned milliseconds) {
  const struct timespec delay = {milliseconds / 1000, (long)(milliseconds % 1000) * 1000000};
  clock_nanosleep(CLOCK_MONOTONIC, 0, &delay, NULL);
}

// Fills `text`, as far as it is long enough; it is empty when nobody has copied.
static void read_text(char* text, size_t size) {
  int ends[2];
  size_t have = 0;
  wl_display_roundtrip(display);
  text[0] = '\0';
  if (source != NULL || selection == NULL || pipe(ends) != 0) return;
  zwlr_data_control_offer_v1_receive(selection, "text/plain;charset=utf-8", ends[1]);
  wl_display_flush(display);
  close(ends[1]);
  for (ssize_t part; (part = read(ends[0], text + have, size - 1 - have)) > 0;)
    have += (size_t)part;
  text[have] = '\0';
  close(ends[0]);
}

static void send_text(const char* text) {
  char message[8192];
  const int length =
      snprintf(message, sizeof message, "{\"request\":\"MakeCall\",\"number\":\"%s\"}", text);
  const int client = connect_to(&client_address);
  if (write(client, message, (size_t)length) < 0) perror("message");
  close(client);
}

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  snprintf(client_address.sun_path, sizeof client_address.sun_path, "%s", argv[1]);
  const unsigned delay = (unsigned)atoi(argv[3]);
  open_display();
  const int sway = bind_hot_key((unsigned)atoi(argv[2]));
  for (;;) {
    if (strstr(next_message(sway), "floor-released") == NULL) continue;
    copy_selection();
    wait_for(delay);
    char text[4096];
    read_text(text, sizeof text);
    if (text[0] != '\0') send_text(text);
  }
}
