# What Doxygen 1.9.4 reads in another way than the Markdown pages mean it.
BEGIN {
    page = ARGV[1]
    sub(/.*\//, "", page)
    sub(/\.md$/, "", page)
}

# A block's name is for the tests. Fortran would be put into small letters.
/^```/ {
    in_block = !in_block
    sub(/ .*|fortran.*/, "")
}
in_block {
    print
    next
}

# An image's text must stand in one line.
/^!\[/ {
    while (!/\)$/ && (getline line) > 0)
        $0 = $0 " " line
}

# Headings have no anchors of their own: give them those that links use, with the page's name before
# them, since Doxygen knows them all together.
/^##+ / {
    slug = tolower($0)
    sub(/^#* /, "", slug)
    gsub(/[^a-z0-9 -]/, "", slug)
    gsub(/ /, "-", slug)
    $0 = $0 " {#" page "-" slug "}"
}
{
    gsub(/\]\(#/, "](#" page "-")
    while (match($0, /\]\([A-Za-z.\/-]*\.md#/)) {
        target = substr($0, RSTART + 2, RLENGTH - 6)
        sub(/.*\//, "", target)
        $0 = substr($0, 1, RSTART + 1) "#" target "-" substr($0, RSTART + RLENGTH)
    }
}

# A header's page has a name of its own.
{
    gsub(/\]\((\.\.\/)?include\/kxmaths5\//, "](@ref ")
}

# Files that are no pages here: their names in place of links.
{
    while (match($0, /\]\((\.\.\/)?(api|debugger|examples|python\/|src|tests\/|tools|LICENSE)[^)]*\)/)) {
        before = substr($0, 1, RSTART - 1)
        after = substr($0, RSTART + RLENGTH)
        match(before, /\[[^\[]*$/)
        $0 = substr(before, 1, RSTART - 1) substr(before, RSTART + 1) after
    }
}

# In tables of functions each name leads to the contract.
/^\| [^`].*\| `(KX|kx_)[A-Za-z0-9_, `]* \|( \|)?$/ {
    while (match($0, /`(KX[A-Za-z0-9]*|kx_[a-z0-9_]*)`/))
        $0 = substr($0, 1, RSTART - 1) substr($0, RSTART + 1, RLENGTH - 2) "()" substr($0, RSTART + RLENGTH)
}
{
    print
}
