// SPDX-License-Identifier: MIT
#include "command_line.h"

std::string helpText()
{
    return R"(Usage: zo [OPTION...] COMMAND

Reads and writes the memory of a robot.

Commands:
  list [SUBSTRING]   print the keys, or those that contain SUBSTRING, sorted by bytes
  get KEY...         print a line KEY<tab>TYPE<tab>VALUE for each key, in this order
  set KEY VALUE      store the text VALUE as it stands: 3 reads back as an int, 0.5 or
                     3.0 as a float, true as a bool, [1,"a"] as an array, "x" and every
                     text that is no JSON as a string
  watch [--period MS] [--count N] KEY...
                     print a line SECONDS<tab>KEY<tab>TYPE<tab>VALUE for each key every
                     MS milliseconds (1000), with the seconds since the start; end after
                     N times, or on Ctrl-C. While the robot is lost it prints no lines,
                     and goes on when the robot is back.

A TYPE is invalid, array, bool, int, float, string or unknown; a key that does not exist
is invalid and has no value. Control characters and backslashes in keys and values are
printed as \t \n \r \\ or \xHH, so each line is one record.

Options:
  --connect HOST[:PORT]  where the robot's memory is (127.0.0.1:6379); put an IPv6
                         address in brackets: [::1]:6379
  --user NAME            the robot's user; some need no password
  --password-file FILE   file whose first line is the password
  --tls                  connect by TLS and check the robot's certificate
  --ca FILE              authorities to trust (PEM), in place of the system's
  --cert FILE            certificate to show (PEM), with --key FILE, its key
  --timeout MS           longest wait for a connection, for one answer and for the list of
                         keys (1000, 250 and 2000); each key adds 0.02 ms to the last two
  --help                 print this
  --version              print the version
  --                     ends the options before a key that begins with -

Exit status: 0 done; 1 the robot or the connection failed, or the output cannot be
written; 2 wrong use.
)";
}
