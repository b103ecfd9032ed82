# Prints what is longer than it should be: functions above `function_limit` lines, overrides above
# `override_limit`, files above `file_limit`. Reads the formatted sources of the library, headers
# first, for there it stands which functions override. A function's lines are those from its opening
# brace to the closing one; a lambda is part of the function around it.
#   awk -f tools/sizes.awk HEADER... SOURCE...

BEGIN { function_limit = 60; override_limit = 25; file_limit = 500 }

function bare(text) { # without texts, characters and comments, which may hold braces
    gsub(/\\./, "", text)
    gsub(/"[^"]*"/, "\"\"", text)
    gsub(/'[^']*'/, "''", text)
    sub(/\/\/.*/, "", text)
    gsub(/\/\*[^*]*\*\//, "", text)
    return text
}

function indent(text) {
    match(text, /^ */)
    return RLENGTH
}

# The name before the parameters, with the class before it: "Dock::insertPage".
function name_of(head, name) {
    sub(/^ *: .*/, "", head)
    if (match(head, /operator *[^ (]+ *\(|operator\(\) *\(/))
        return substr(head, 1, RSTART - 1) substr(head, RSTART, RLENGTH - 1)
    if (!match(head, /[~A-Za-z_][A-Za-z_0-9:~<>]* *\(/))
        return ""
    name = substr(head, RSTART, RLENGTH - 1)
    gsub(/ /, "", name)
    return name
}

function finish_file() {
    if (file != "" && file_lines > file_limit)
        printf "%s: %d lines\n", file, file_lines
}

FNR == 1 {
    finish_file()
    file = FILENAME
    in_function = in_comment = depth_class = 0
    head = ""
    delete classes
}

{ file_lines = FNR }

in_comment {
    if (/\*\//)
        in_comment = 0
    next
}

/^ *\/\*/ && !/\*\// { in_comment = 1; next }
/^ *#/ || /^ *\/\// || /^ *\/\*.*\*\/ *$/ { next }

in_function {
    if (indent($0) == body_indent && /^ *}/) {
        lines = FNR - body_start + 1
        is_override = overrides || ((name in overriding) && !(name in overloaded))
        limit = is_override ? override_limit : function_limit
        if (lines > limit)
            printf "%s:%d: %s has %d lines (%s %d)\n", file, body_start, name, lines,
                   is_override ? "override, at most" : "at most", limit
        in_function = 0
        head = ""
    }
    next
}

{
    line = bare($0)
    if (line ~ /^ *$/) { head = ""; next }

    # The end of a class: back to the one around it.
    if (line ~ /^ *};/ && depth_class && indent(line) == class_indent[depth_class]) {
        --depth_class
        head = ""
        next
    }
    if (line ~ /^ *(public|private|protected|Q_SIGNALS|signals)[A-Za-z_ ]*:$/) { head = ""; next }

    if (head == "")
        head_indent = indent(line)
    head = head " " line

    if (line ~ /{ *$/ && head ~ /^ *(template *<[^{]*> *)?(class|struct|union) [^;()]*({)? *$/ ||
        line ~ /{ *$/ && head ~ /^ *(template *<[^{]*> *)?(class|struct|union) [A-Za-z_ :<>,]*(final)?[^=;]*{ *$/ &&
            head !~ /\) *(const)? *(noexcept)? *{ *$/) {
        class_name = head
        sub(/ *{ *$/, "", class_name)
        sub(/ (final)? *: [^:].*/, "", class_name)
        sub(/ final *$/, "", class_name)
        sub(/.* /, "", class_name)
        ++depth_class
        class_indent[depth_class] = head_indent
        class_at[depth_class] = class_name
        head = ""
        next
    }
    if (line ~ /; *$/ || line ~ /} *$/) { # a declaration, or a function on one line
        if (head ~ /\) *(const)? *(noexcept)? *override/ && depth_class) {
            declared = class_at[depth_class] "::" name_of(head)
            overriding[declared] = 1
        } else if (depth_class && head ~ /\(/ && head !~ /=/) {
            plain_declared = class_at[depth_class] "::" name_of(head)
            overloaded[plain_declared] = 1
        }
        head = ""
        next
    }
    if (line ~ /{ *$/) {
        if (head ~ /^ *(inline )?namespace/ || head ~ /extern ""/ || head ~ /^ *enum/ ||
            head !~ /\(/ || head ~ /= *{ *$/) {
            if (head ~ /^ *(inline )?namespace/ || head ~ /extern ""/) { head = ""; next }
            # A table or an enumeration: passed over like a function without a limit.
            in_function = 1; overrides = 0; name = "(table)"; body_indent = head_indent
            body_start = FNR + 1000000
            next
        }
        in_function = 1
        name = name_of(head)
        if (depth_class && name !~ /::/)
            name = class_at[depth_class] "::" name
        overrides = head ~ /\) *(const)? *(noexcept)? *override/
        body_indent = head_indent
        body_start = FNR
    }
}

END { finish_file() }
