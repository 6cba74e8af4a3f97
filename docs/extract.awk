# Extracts the files and the sessions of a page into the folder OUT.
#
#   awk -v out=OUT -f extract.awk PAGE
#
# A code block after the line "<!-- file: NAME -->" is a file; blocks with the same name are joined.
# A "console" block is a session, or continues the one that "<!-- session: NAME -->" began; it goes
# to OUT/sessions/NAME. A "text" block after "<!-- output: NAME -->" is what the program NAME
# prints, or the next part of it, after a blank line; this is a session too. Other "text" blocks are
# ignored. Any other code in a page is an error, so that no code goes untested.

/^<!-- file: [^ ]+ -->$/ { name = $3; next }
/^<!-- session: [^ ]+ -->$/ { session = $3; next }
/^<!-- output: [^ ]+ -->$/ { output = $3; next }

/^```/ && inside { inside = 0; next }
/^```/ {
    inside = 1
    target = ""
    if (name != "")
        target = out "/" name
    else if ($0 == "```console")
        target = out "/sessions/" (session == "" ? "session" : session)
    else if (output != "") {
        target = out "/sessions/" output
        print (printed[output]++ ? "" : "$ " output) > target
    } else if ($0 != "```text") {
        print FILENAME ":" FNR ": code that is neither a file nor a session" > "/dev/stderr"
        failed = 1
    }
    name = output = ""
    next
}

inside && target != "" { print > target }
!inside && name output != "" {
    print FILENAME ":" FNR ": no block follows the comment" > "/dev/stderr"
    failed = 1
}
END { exit failed }
