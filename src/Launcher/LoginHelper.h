#pragma once

#include <string>

#include <gio/gio.h>

/// Starts the program at login, and ends when the program says that it runs; at once if it runs already. It
/// carries its own name on the session bus meanwhile, by which the program finds it. Without a session bus
/// there is nobody to tell it, and it ends as soon as the program is started.
class LoginHelper {
 public:
  LoginHelper();
  ~LoginHelper();
  LoginHelper(const LoginHelper&) = delete;
  LoginHelper& operator=(const LoginHelper&) = delete;

  /// The process's exit code: 1 if the program can't be started.
  int run();

 private:
  bool isProgramRunning() const;
  /// False if another helper is at work.
  bool takeName() const;
  bool startProgram();
  void listen();
  void end() const { g_main_loop_quit(loop_); }

  GMainLoop* loop_ = g_main_loop_new(nullptr, FALSE);
  GDBusConnection* connection_ = nullptr;
};
