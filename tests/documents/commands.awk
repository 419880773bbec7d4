# Makes a shell script of a page: its boxes of commands, "sh", as they are, and its programs as files
# that are named after their box: the box "c host" becomes host.c.
/^```$/ && inside {
    if (inside == "program") {
        print "KX_END_OF_PROGRAM"
    }
    inside = ""
    next
}
/^```/ && !inside {
    inside = "other"
    kind = substr($1, 4)
    ending = kind == "fortran" ? "f90" : kind
    if (kind == "sh") {
        inside = "commands"
    } else if (kind ~ /^(c|cpp|lua|fortran)$/ && NF == 2) {
        inside = "program"
        print "cat >" $2 "." ending " <<'KX_END_OF_PROGRAM'"
    }
    next
}
inside == "commands" || inside == "program"
