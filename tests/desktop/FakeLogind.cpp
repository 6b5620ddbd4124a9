// tarnwick-fakelogind: stands in for logind on a private system bus, so that
// a test can put the machine to sleep and wake it up.
//
//   DBUS_SYSTEM_BUS_ADDRESS=unix:path=... tarnwick-fakelogind
//
// It owns org.freedesktop.login1 and prints "ready" once the name is its own.
// SIGUSR1 sends PrepareForSleep(true), SIGUSR2 PrepareForSleep(false); each
// prints "sleep" or "wake" once the signal has left for the bus. SIGTERM ends
// it. The signals come from the name's owner itself: listeners that follow
// the well-known name accept nothing from another connection.
#include <gio/gio.h>
#include <glib-unix.h>

#include <csignal>
#include <cstdio>

namespace {

struct State {
    GDBusConnection* bus = nullptr;
    GMainLoop* loop = nullptr;
    bool owned = false;
};

void prepareForSleep(State& s, bool sleeping) {
    GError* error = nullptr;
    if (!g_dbus_connection_emit_signal(s.bus, nullptr, "/org/freedesktop/login1",
                                       "org.freedesktop.login1.Manager", "PrepareForSleep",
                                       g_variant_new("(b)", sleeping), &error) ||
        !g_dbus_connection_flush_sync(s.bus, nullptr, &error)) {
        std::fprintf(stderr, "tarnwick-fakelogind: %s\n", error ? error->message : "emit failed");
        g_clear_error(&error);
        return;
    }
    std::printf("%s\n", sleeping ? "sleep" : "wake");
    std::fflush(stdout);
}

} // namespace

int main() {
    State s;
    GError* error = nullptr;
    s.bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error);
    if (!s.bus) {
        std::fprintf(stderr, "tarnwick-fakelogind: no system bus: %s\n", error->message);
        g_error_free(error);
        return 1;
    }
    s.loop = g_main_loop_new(nullptr, FALSE);
    g_bus_own_name_on_connection(
        s.bus, "org.freedesktop.login1", G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE,
        [](GDBusConnection*, const gchar*, gpointer data) {
            static_cast<State*>(data)->owned = true;
            std::printf("ready\n");
            std::fflush(stdout);
        },
        [](GDBusConnection*, const gchar*, gpointer data) {
            auto* st = static_cast<State*>(data);
            std::fprintf(stderr, "tarnwick-fakelogind: %s org.freedesktop.login1\n",
                         st->owned ? "lost" : "could not own");
            g_main_loop_quit(st->loop);
        },
        &s, nullptr);
    g_unix_signal_add(
        SIGUSR1,
        [](gpointer data) -> gboolean {
            prepareForSleep(*static_cast<State*>(data), true);
            return G_SOURCE_CONTINUE;
        },
        &s);
    g_unix_signal_add(
        SIGUSR2,
        [](gpointer data) -> gboolean {
            prepareForSleep(*static_cast<State*>(data), false);
            return G_SOURCE_CONTINUE;
        },
        &s);
    g_unix_signal_add(
        SIGTERM,
        [](gpointer data) -> gboolean {
            g_main_loop_quit(static_cast<State*>(data)->loop);
            return G_SOURCE_REMOVE;
        },
        &s);
    g_main_loop_run(s.loop);
    const int rc = s.owned ? 0 : 1;
    g_main_loop_unref(s.loop);
    g_object_unref(s.bus);
    return rc;
}
