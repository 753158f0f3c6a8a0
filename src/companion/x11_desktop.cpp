#include "companion/x11_desktop.h"

#include <unistd.h>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "companion/processes.h"

namespace orvane::companion {
namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

// One window to be closed.
struct Window {
  xcb_window_t id = XCB_NONE;
  int screen = 0;
  // Index of its application; a window that stands for another one, as a dialog does, has none.
  int application = -1;
};

// Properties of a window.
struct Facts {
  std::string title;
  pid_t process = 0;  // 0: unknown, or of another machine
  bool transient = false;
  bool part_of_desktop = false;
  bool closes_on_request = false;
};

std::string Latin1ToUtf8(std::string_view text) {
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

}  // namespace

struct X11Desktop::Display {
  explicit Display(xcb_connection_t* opened) : connection(opened) {}
  ~Display() {
    if (ewmh_ready) xcb_ewmh_connection_wipe(&ewmh);
    xcb_disconnect(connection);
  }
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  xcb_atom_t Atom(std::string_view name) const;
  std::vector<xcb_window_t> Clients(int screen);
  bool Supports(int screen, xcb_atom_t hint);
  bool IsAlive(xcb_window_t window) const;
  bool IsOfThisMachine(xcb_window_t window) const;
  pid_t Process(xcb_window_t window);
  std::string Title(xcb_window_t window);
  Facts Read(xcb_window_t window);
  void Ask(const Window& window);

  xcb_connection_t* connection;
  xcb_ewmh_connection_t ewmh{};
  bool ewmh_ready = false;
  xcb_atom_t delete_window = XCB_NONE;
  xcb_atom_t client_leader = XCB_NONE;
  std::vector<Window> windows;
  std::size_t applications = 0;
};

xcb_atom_t X11Desktop::Display::Atom(std::string_view name) const {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection,
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_NONE);
}

// The windows that the window manager manages, in the order in which they came up.
std::vector<xcb_window_t> X11Desktop::Display::Clients(int screen) {
  xcb_ewmh_get_windows_reply_t list{};
  if (!xcb_ewmh_get_client_list_reply(&ewmh, xcb_ewmh_get_client_list(&ewmh, screen), &list,
                                      nullptr)) {
    return {};
  }
  std::vector<xcb_window_t> clients(list.windows, list.windows + list.windows_len);
  xcb_ewmh_get_windows_reply_wipe(&list);
  return clients;
}

bool X11Desktop::Display::Supports(int screen, xcb_atom_t hint) {
  xcb_ewmh_get_atoms_reply_t hints{};
  if (!xcb_ewmh_get_supported_reply(&ewmh, xcb_ewmh_get_supported(&ewmh, screen), &hints,
                                    nullptr)) {
    return false;
  }
  const bool found =
      std::find(hints.atoms, hints.atoms + hints.atoms_len, hint) != hints.atoms + hints.atoms_len;
  xcb_ewmh_get_atoms_reply_wipe(&hints);
  return found;
}

bool X11Desktop::Display::IsAlive(xcb_window_t window) const {
  const Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
      connection, xcb_get_window_attributes(connection, window), nullptr));
  return reply != nullptr;
}

bool X11Desktop::Display::IsOfThisMachine(xcb_window_t window) const {
  xcb_icccm_get_text_property_reply_t machine{};
  if (!xcb_icccm_get_wm_client_machine_reply(
          connection, xcb_icccm_get_wm_client_machine(connection, window), &machine, nullptr)) {
    return true;
  }
  std::array<char, 256> name{};
  gethostname(name.data(), name.size() - 1);
  const bool same =
      machine.name_len == 0 || std::string_view(machine.name, machine.name_len) == name.data();
  xcb_icccm_get_text_property_reply_wipe(&machine);
  return same;
}

// By the window itself, else by the leader of its client.
pid_t X11Desktop::Display::Process(xcb_window_t window) {
  if (!IsOfThisMachine(window)) return 0;
  std::uint32_t process = 0;
  if (xcb_ewmh_get_wm_pid_reply(&ewmh, xcb_ewmh_get_wm_pid(&ewmh, window), &process, nullptr)) {
    return static_cast<pid_t>(process);
  }
  const Reply<xcb_get_property_reply_t> leader(xcb_get_property_reply(
      connection, xcb_get_property(connection, 0, window, client_leader, XCB_ATOM_WINDOW, 0, 1),
      nullptr));
  if (!leader || xcb_get_property_value_length(leader.get()) < 4) return 0;
  const auto id = *static_cast<const xcb_window_t*>(xcb_get_property_value(leader.get()));
  if (xcb_ewmh_get_wm_pid_reply(&ewmh, xcb_ewmh_get_wm_pid(&ewmh, id), &process, nullptr)) {
    return static_cast<pid_t>(process);
  }
  return 0;
}

std::string X11Desktop::Display::Title(xcb_window_t window) {
  xcb_ewmh_get_utf8_strings_reply_t name{};
  if (xcb_ewmh_get_wm_name_reply(&ewmh, xcb_ewmh_get_wm_name(&ewmh, window), &name, nullptr)) {
    std::string title(name.strings, name.strings_len);
    xcb_ewmh_get_utf8_strings_reply_wipe(&name);
    return title;
  }
  xcb_icccm_get_text_property_reply_t text{};
  if (!xcb_icccm_get_wm_name_reply(connection, xcb_icccm_get_wm_name(connection, window), &text,
                                   nullptr)) {
    return "";
  }
  std::string title(text.name, text.name_len);
  if (text.encoding == XCB_ATOM_STRING) title = Latin1ToUtf8(title);
  xcb_icccm_get_text_property_reply_wipe(&text);
  return title;
}

Facts X11Desktop::Display::Read(xcb_window_t window) {
  Facts facts;
  facts.title = Title(window);
  facts.process = Process(window);
  xcb_window_t owner = XCB_NONE;
  facts.transient =
      xcb_icccm_get_wm_transient_for_reply(
          connection, xcb_icccm_get_wm_transient_for(connection, window), &owner, nullptr) != 0 &&
      owner != XCB_NONE;
  xcb_ewmh_get_atoms_reply_t types{};
  if (xcb_ewmh_get_wm_window_type_reply(&ewmh, xcb_ewmh_get_wm_window_type(&ewmh, window), &types,
                                        nullptr)) {
    facts.part_of_desktop =
        std::any_of(types.atoms, types.atoms + types.atoms_len, [&](xcb_atom_t type) {
          return type == ewmh._NET_WM_WINDOW_TYPE_DOCK || type == ewmh._NET_WM_WINDOW_TYPE_DESKTOP;
        });
    xcb_ewmh_get_atoms_reply_wipe(&types);
  }
  xcb_icccm_get_wm_protocols_reply_t protocols{};
  if (xcb_icccm_get_wm_protocols_reply(
          connection, xcb_icccm_get_wm_protocols(connection, window, ewmh.WM_PROTOCOLS), &protocols,
          nullptr)) {
    facts.closes_on_request = std::find(protocols.atoms, protocols.atoms + protocols.atoms_len,
                                        delete_window) != protocols.atoms + protocols.atoms_len;
    xcb_icccm_get_wm_protocols_reply_wipe(&protocols);
  }
  return facts;
}

// Through the window manager where it takes such requests, as a click on the close button goes.
void X11Desktop::Display::Ask(const Window& window) {
  if (Supports(window.screen, ewmh._NET_CLOSE_WINDOW)) {
    xcb_ewmh_request_close_window(&ewmh, window.screen, window.id, XCB_CURRENT_TIME,
                                  XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    return;
  }
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window.id;
  event.type = ewmh.WM_PROTOCOLS;
  event.data.data32[0] = delete_window;
  event.data.data32[1] = XCB_CURRENT_TIME;
  xcb_send_event(connection, 0, window.id, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&event));
}

X11Desktop::X11Desktop(std::unique_ptr<Display> display) : display_(std::move(display)) {}

X11Desktop::~X11Desktop() = default;

std::unique_ptr<X11Desktop> X11Desktop::Open() {
  auto display = std::make_unique<Display>(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(display->connection)) return nullptr;
  xcb_intern_atom_cookie_t* cookies = xcb_ewmh_init_atoms(display->connection, &display->ewmh);
  display->ewmh_ready = cookies && xcb_ewmh_init_atoms_replies(&display->ewmh, cookies, nullptr);
  if (!display->ewmh_ready) return nullptr;
  display->delete_window = display->Atom("WM_DELETE_WINDOW");
  display->client_leader = display->Atom("WM_CLIENT_LEADER");
  return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(display)));
}

// A window that knows no request to close is not asked: all that could be done to it is to kill its
// owner.
std::vector<Application> X11Desktop::List(const std::set<pid_t>& spared) {
  std::vector<Application> applications;
  std::set<pid_t> owners;
  for (int screen = 0; screen < display_->ewmh.nb_screens; ++screen) {
    for (const xcb_window_t id : display_->Clients(screen)) {
      const Facts facts = display_->Read(id);
      if (facts.part_of_desktop || !facts.closes_on_request || spared.contains(facts.process)) {
        continue;
      }
      Window window{id, screen, -1};
      if (!facts.transient) {
        window.application = static_cast<int>(applications.size());
        Application application;
        application.title = facts.title;
        // What a process writes stands with its first window.
        if (facts.process > 0 && owners.insert(facts.process).second) {
          application.processes.push_back(facts.process);
        }
        applications.push_back(std::move(application));
      }
      display_->windows.push_back(window);
    }
  }
  const ProcessTree tree;
  for (Application& application : applications) {
    if (!application.processes.empty()) {
      application.processes = tree.Family(application.processes.front(), owners);
    }
  }
  display_->applications = applications.size();
  return applications;
}

// Dialogs first: most windows do not close over an open one.
void X11Desktop::AskToClose() {
  for (const bool dialogs : {true, false}) {
    for (const Window& window : display_->windows) {
      if ((window.application < 0) == dialogs) display_->Ask(window);
    }
  }
  xcb_flush(display_->connection);
}

bool X11Desktop::Look(std::vector<bool>& gone) {
  while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(display_->connection)}) {
  }
  std::set<xcb_window_t> managed;
  for (int screen = 0; screen < display_->ewmh.nb_screens; ++screen) {
    for (const xcb_window_t id : display_->Clients(screen)) managed.insert(id);
  }
  gone.assign(display_->applications, false);
  for (const Window& window : display_->windows) {
    if (window.application < 0 || managed.contains(window.id)) continue;
    // No longer managed may also mean that the window manager has gone.
    gone[static_cast<std::size_t>(window.application)] =
        !managed.empty() || !display_->IsAlive(window.id);
  }
  return !xcb_connection_has_error(display_->connection);
}

std::vector<Application> X11Desktop::Others(const std::set<pid_t>& spared) {
  std::vector<Application> others;
  for (int screen = 0; screen < display_->ewmh.nb_screens; ++screen) {
    for (const xcb_window_t id : display_->Clients(screen)) {
      const bool listed = std::any_of(display_->windows.begin(), display_->windows.end(),
                                      [&](const Window& window) { return window.id == id; });
      if (listed) continue;
      const Facts facts = display_->Read(id);
      if (facts.part_of_desktop || facts.transient || spared.contains(facts.process)) continue;
      Application application;
      application.title = facts.title;
      if (facts.process > 0) application.processes.push_back(facts.process);
      others.push_back(std::move(application));
    }
  }
  return others;
}

}  // namespace orvane::companion
