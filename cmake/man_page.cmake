# Writes the man page with help2man from the built program itself, so that
# the page and --help cannot tell different stories: help2man reads
# `folioscope --help` and `--version`, and a COMMANDS section gathers the
# --help of every subcommand the program lists (new commands included).
#   cmake -DFOLIOSCOPE=<program> -DOUTPUT=<folioscope.1> -P man_page.cmake
cmake_minimum_required(VERSION 3.25)
find_program(HELP2MAN help2man REQUIRED)
execute_process(COMMAND ${FOLIOSCOPE} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)

# The subcommands are the indented words of the "Subcommands:" block.
string(REGEX REPLACE ".*\nSubcommands:\n" "" block "${help}")
string(REGEX MATCHALL "(^|\n)  [a-z][a-z0-9-]*" names "${block}")
set(sections "[COMMANDS]\n")
foreach(name ${names})
  string(STRIP "${name}" name)
  execute_process(COMMAND ${FOLIOSCOPE} ${name} --help OUTPUT_VARIABLE command_help
                  COMMAND_ERROR_IS_FATAL ANY)
  # Each command's help as a literal block under its name.
  string(REPLACE "\\" "\\e" command_help "${command_help}")
  string(APPEND sections ".TP\n.B ${name}\n.nf\n${command_help}.fi\n")
endforeach()
string(APPEND sections "[FILES]\n"
  ".TP\n.I <exe>/../share/folioscope/Res/\nthe report sets (Standard)\n"
  ".TP\n.I <exe>/../share/folioscope/sfn.dat\nthe formatter's keyword list\n"
  ".TP\n.I ~/.config/quillon/registry.reg\nthe settings (see --registry)\n")
get_filename_component(work ${OUTPUT} DIRECTORY)
file(WRITE ${work}/folioscope-man-include.h2m "${sections}")
execute_process(
  COMMAND ${HELP2MAN} --no-info --section 1 --name "documentation reports for Visual Basic 6 projects"
          --include ${work}/folioscope-man-include.h2m --output ${OUTPUT} ${FOLIOSCOPE}
  COMMAND_ERROR_IS_FATAL ANY)
