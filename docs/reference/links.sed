# Doxygen reads the pages through this filter: Class::member() becomes a link. Two classes have no
# namespace.
s/(^|[ (])((FilePathEdit|FrameSlider)::[A-Za-z]+)\(\)/\1@ref \2 "\2()"/g
s/(^|[ (])([A-Z][A-Za-z]+::[A-Za-z]+)\(\)/\1@ref Kestrel::UI::\2 "\2()"/g
