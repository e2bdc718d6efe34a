// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// For programs under the leak checker. The OpenGL driver is a plug-in, which GLX unloads before the check;
// the few bytes that it keeps per context would then be leaks of an unknown module, which no suppression can
// name.
extern "C" __attribute__((visibility("default"))) int dlclose(void* handle);

extern "C" int dlclose(void* /*handle*/)
{
  return 0;
}
