# Doxygen reads the pages through this filter: Class::member() becomes a link.
s/(^|[ (])([A-Z][A-Za-z]+::[A-Za-z]+)\(\)/\1@ref Kestrel::UI::\2 "\2()"/g
