// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Batch.h"

#include "AppUtil.h"
#include "Console.h"
#include "Interrupt.h"
#include "Output.h"
#include "PickReport.h"
#include "ProgressBar.h"
#include "Spin.h"
#include "Viewer.h"

namespace {

/// False when the file could not be written, and the user has been told.
bool write_one(Viewer& viewer, const Output& output)
{
  const std::string problem = write_output(viewer.view(), output);
  if (!problem.empty()) {
    Console::complain(output.path, problem);
  }
  return problem.empty();
}

/// False as above.
bool write_report(Viewer& viewer)
{
  const PickOptions& options = viewer.options().pick;
  const std::string problem = options.report.empty() ? "" : write_pick_report(options, viewer.model());
  if (!problem.empty()) {
    Console::complain(options.report, problem);
  }
  return problem.empty();
}

/// All files but those of a turn.
bool write_still(Viewer& viewer)
{
  bool is_written = write_report(viewer);
  for (const Output& output : viewer.options().outputs) {
    const bool is_now = viewer.options().spin == 0 || !is_image(output.format);
    if (is_now && !AppUtil::instance()->interrupt()) {
      is_written = write_one(viewer, output) && is_written;
    }
  }
  return is_written;
}

/// The pictures of one side of a turn. False ends the turn.
bool write_side(Viewer& viewer, int number)
{
  bool is_written = true;
  for (const Output& output : viewer.options().outputs) {
    if (is_image(output.format)) {
      is_written = write_one(viewer, numbered(output, number)) && is_written;
    }
  }
  return is_written;
}

bool write_turn(Viewer& viewer)
{
  const int steps = viewer.options().spin;
  ProgressBar bar("pictures");
  return turn_around(viewer.view(), viewer.turn_axis(), steps, [&](int number) {
    if (number > 1) {
      viewer.refresh();
    }
    const bool is_written = write_side(viewer, number);
    bar.draw(static_cast<double>(number) / steps);
    return is_written;
  });
}

} // namespace

int write_outputs(Viewer& viewer)
{
  // A file that is being written is finished first.
  const InterruptScope interrupt(InterruptScope::Patience::Endless);
  viewer.start();
  const bool is_written = write_still(viewer) && (viewer.options().spin == 0 || write_turn(viewer));
  if (AppUtil::instance()->interrupt()) {
    Console::complain("interrupted");
    return EXIT_INTERRUPTED;
  }
  return is_written ? EXIT_ALL_SHOWN : EXIT_NOTHING_SHOWN;
}
