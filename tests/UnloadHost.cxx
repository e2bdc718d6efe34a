// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// UnloadHost <plug-in> <times>: a host on VTK that is not linked with the library. It loads a plug-in that
// is, has it render into the host's window, unloads it, and goes on with the window; so many times.
//
// Exit status 0 when all went well, and the last line then says whether the library is still loaded: "gone"
// or "stays". Any other end is a failure.
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace {

using ShowInWindow = void (*)(vtkRenderWindow*);

bool show_with_plugin(const char* path, vtkRenderWindow* window)
{
  void* plugin = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (plugin == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return false;
  }
  auto show = reinterpret_cast<ShowInWindow>(dlsym(plugin, "show_in_window"));
  if (show == nullptr) {
    return false;
  }
  show(window);
  return dlclose(plugin) == 0;
}

bool is_loaded(const char* library)
{
  void* handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) {
    dlclose(handle);
  }
  return handle != nullptr;
}

} // namespace

int main(int argc, char** argv)
{
  if (argc != 3) {
    return 2;
  }
  const vtkNew<vtkRenderWindow> window;
  const vtkNew<vtkRenderer> renderer;
  window->AddRenderer(renderer);
  window->SetSize(60, 60);
  window->Render();
  for (int i = 0; i < std::atoi(argv[2]); ++i) {
    if (!show_with_plugin(argv[1], window)) {
      return 1;
    }
    window->Render();
  }
  std::puts(is_loaded("libmorrow_base.so.0") ? "stays" : "gone");
  return 0;
}
