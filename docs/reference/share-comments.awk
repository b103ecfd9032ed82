# Doxygen reads every public header through this filter. Members that stand together, without a
# blank line between them, share the comment above the first: here each of them gets it. What is the
# same everywhere is said here instead of in every header: owning parents, properties and Qt's own
# virtuals.
# Text is added within lines, so that warnings name the right line.

# The text of a comment that is still open, for those who share it.
in_comment {
  text = $0
  sub(/^[ \t]*(\* )?/, "", text)
  shared = shared " \\ilinebr " text
  in_comment = text !~ /\*\//
  print
  next
}

/^[ \t]*\/\*\*/ && depth == 0 {
  shared = $0
  sub(/^[ \t]*/, "", shared)
  in_comment = shared !~ /\*\//
  fresh = 1
  print
  next
}

{
  bare = $0
  sub(/\/\/.*$/, "", bare)
  gsub(/[ \t]/, "", bare)
  line = bare
  opened = gsub(/{/, "", line) - gsub(/}/, "", line)
}

# Inside the body of a function, or on a further line of a declaration.
depth > 0 || unfinished {
  depth += opened
  unfinished = depth == 0 && bare !~ /[;}]$/
  print
  next
}

# A property, on one line or on several: its functions are described.
in_property {
  in_property = bare !~ /\)$/
  print
  next
}
/^[ \t]*Q_PROPERTY\(/ {
  if (!fresh)
    $0 = "/** The functions that it names tell what it is. */ " $0
  fresh = 0
  in_property = bare !~ /\)$/
  print
  next
}

# Scopes, access, preprocessor, macros, blank lines: they end a stretch of members.
bare == "" || bare ~ /^(class|struct|enum|namespace|extern|public|protected|private|signals|[#}])/ ||
bare ~ /^Q[A-Z]*_[A-Z_]+(:|\(.*\))?$/ {
  in_enum = bare ~ /^enum/ && opened > 0
  shared = ""
  fresh = 0
  print
  next
}

in_enum || /\/\/\/</ {
  print
  next
}

{
  if (!fresh) {
    if (bare ~ /override[;{]/ && bare !~ /^~|(text|time)\(\)/)
      $0 = "/** Reimplemented from Qt. */ " $0
    else if (bare ~ /^explicit[A-Za-z]+\(Q(Widget|Object)\*parent=nullptr\);/)
      $0 = "/** `parent` owns the object; without one, whoever made it does. */ " $0
    else if (shared != "" && bare !~ /~|=delete;/ && shared !~ /@{/)
      $0 = shared " " $0
  }
  fresh = 0
  depth = opened
  unfinished = depth == 0 && bare !~ /[;}]$/
  print
}
