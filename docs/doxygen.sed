# What Doxygen 1.9.4 reads in another way than the Markdown pages mean it.

# Headings have no anchors of their own: give them those that the pages' links use. None begins with a
# digit.
/^## [A-Za-z]/ {
    h
    s/^#* //
    y/ABCDEFGHIJKLMNOPQRSTUVWXYZ/abcdefghijklmnopqrstuvwxyz/
    s/[^a-z0-9 -]//g
    s/ /-/g
    s/.*/{#&}/
    H
    x
    s/\n/ /
}

# An image's text must stand in one line.
/^!\[/ {
    :join
    /)$/! {
        N
        b join
    }
    s/\n/ /g
}

# A block's name is for the tests. Fortran would be put into small letters.
s/^```fortran.*/```/
s/^```\([a-z]*\) .*/```\1/

# A place on another page: these labels are known on every page.
s/](\([a-z.\/-]*\.md\)#/](#/g

# A header's page has a name of its own.
s/](\(\.\.\/\)\{0,1\}include\/kxmaths5\/\([a-z]*\.h\))/](@ref \2)/g

# Files that are no pages here: their names in place of links.
s/\[\([^]]*\)\](\(\.\.\/\)\{0,1\}\(api\|debugger\|examples\|python\/\|src\|tools\|LICENSE\)[^)]*)/\1/g

# In tables of functions each name leads to the contract.
/^| [^`].*| `KX[A-Za-z0-9, `]* |\( |\)\{0,1\}$/s/`\(KX[A-Za-z0-9]*\)`/\1()/g
