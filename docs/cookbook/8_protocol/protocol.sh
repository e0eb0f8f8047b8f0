server=${1:-http://127.0.0.1:8080/}
ask() { # ENDPOINT?PARAMETERS [DOCUMENT]
    curl --silent --show-error --fail-with-body --data-binary "${2:-}" "$server$1"
}
key=$(ask LoginKey.asp)
login="LoginKey=$key&LoginValue=$(printf %s "$key" | md5sum | cut -c 1-32)"
ask "Login.asp?$login" > /dev/null

exam=$(ask "LoadKavlorObject.asp?ObjName=Exam&FileName=sheets_kvqm.xml&$login")
ask "SaveKavlorObject.asp?ObjName=Exam&FileName=spring_kvqm.xml&$login" "${exam//first term/spring}"
ask "GetTitleFileNames.asp?ObjName=Exam&ExamType=1&$login" | tr ';' '\n'
ask "DeleteKavlorObject.asp?ObjName=Exam&FileName=spring_kvqm.xml&$login"
ask "LoadKavlorObject.asp?ObjName=Exam&FileName=spring_kvqm.xml&$login" > /dev/null 2>&1 || echo "Deleted again"
