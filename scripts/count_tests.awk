# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# Reads the results that ctest wrote in JUnit's format, names the tests that
# were not run, and ends with "N passed, N failed". `status` is ctest's own exit
# status: it fails the run even if every test passed.

function attribute(name,    text) {
  if (!match($0, " " name "=\"[^\"]*\"")) {
    return ""
  }
  text = substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4)
  gsub(/&lt;/, "<", text)
  gsub(/&gt;/, ">", text)
  gsub(/&quot;/, "\"", text)
  gsub(/&amp;/, "\\&", text)
  return text
}

function close_case() {
  if (state == "run") {
    ++passed
  } else if (state == "notrun" && absent != "") {
    ++not_run
    print "not run, " absent ": " test
  } else {
    ++failed
    if (state != "fail") {
      print "not run: " test
    }
  }
  state = ""
}

/<testcase / {
  test = attribute("name")
  state = attribute("status")
  absent = ""
}

# The tests' own words for the one permitted reason.
state == "notrun" && match($0, /data absent: [^<]*/) {
  absent = substr($0, RSTART, RLENGTH)
}

state != "" && (/<\/testcase>/ || /<testcase .*\/>/) {
  close_case()
}

END {
  printf "%d passed, %d failed\n", passed, failed
  exit (failed > 0 || passed == 0 || status != 0)
}
