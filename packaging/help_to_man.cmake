# Writes the man page of the zelvo program from its own help texts, so that
# the page never tells other options than the program takes.
#   cmake -DPROGRAM=path/to/zelvo -DOUTPUT=zelvo.1 -DVERSION=x.y.z -P help_to_man.cmake
# The page: the overall --help, then one section per command with that
# command's --help, each shown as the program prints it.

function(run_help out)
  execute_process(COMMAND ${PROGRAM} ${ARGN} --help OUTPUT_VARIABLE text RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ${ARGN} --help failed (${rc})")
  endif()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# Text printed as it is: backslashes and leading dots or quotes would be
# read as roff requests.
function(as_roff out text)
  string(REPLACE "\\" "\\e" text "${text}")
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
  string(REPLACE "-" "\\-" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

run_help(overview)
# The commands are the lines between "Commands:" and the next blank line.
string(REGEX MATCH "Commands:\n([^\n]+\n)+" block "${overview}")
string(REGEX MATCHALL "\n  [a-z][a-z-]*" names "${block}")

as_roff(overview_roff "${overview}")
string(TIMESTAMP today "%Y-%m-%d" UTC)
set(page ".TH ZELVO 1 \"${today}\" \"zelvo ${VERSION}\" \"User Commands\"
.SH NAME
zelvo \\- the address book on the command line
.SH SYNOPSIS
.B zelvo
[\\-\\-app\\-path DIR] [\\-\\-answer TEXT]... COMMAND [OPTIONS] [ARGS]
.SH DESCRIPTION
.nf
${overview_roff}.fi
.SH COMMANDS
")
foreach(line ${names})
  string(STRIP "${line}" name)
  run_help(text ${name})
  as_roff(text_roff "${text}")
  string(APPEND page ".SS ${name}\n.nf\n${text_roff}.fi\n")
endforeach()
string(APPEND page ".SH FILES
.TP
.I $XDG_DATA_HOME/zelvo/AddressBookW.mdb
the book (by default under ~/.local/share/zelvo)
.SH ENVIRONMENT
.TP
.B ZELVO_LANG
the language of the texts (else taken from LC_ALL, LC_MESSAGES, LANG)
.TP
.B ZELVO_LANG_DIR
the folder of the language catalogues and help pages
.TP
.B ZELVO_TRACE
1: write every error the library passes over to stderr
.SH SEE ALSO
.BR zelvo\\-desktop (1)
")
file(WRITE ${OUTPUT} "${page}")
