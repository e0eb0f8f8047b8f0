import hashlib
import sys
from urllib.error import HTTPError
from urllib.parse import quote, urlencode
from urllib.request import Request, urlopen

server = sys.argv[1] if len(sys.argv) > 1 else "http://127.0.0.1:8080/"
login: dict[str, str] = {}

def ask(endpoint: str, document: str = "", **parameters: str) -> str:
    query = urlencode(parameters | login, quote_via=quote)
    with urlopen(Request(f"{server}{endpoint}?{query}", document.encode(), method="POST")) as reply:
        return reply.read().decode()

key = ask("LoginKey.asp")
login = {"LoginKey": key, "LoginValue": hashlib.md5(key.encode()).hexdigest()}
ask("Login.asp")

exam = ask("LoadKavlorObject.asp", ObjName="Exam", FileName="sheets_kvqm.xml")
copy = exam.replace("first term", "spring")
if refusal := ask("SaveKavlorObject.asp", copy, ObjName="Exam", FileName="spring_kvqm.xml"):
    sys.exit(refusal)
print(ask("GetTitleFileNames.asp", ObjName="Exam", ExamType="1").replace(";", "\n"), end="")
ask("DeleteKavlorObject.asp", ObjName="Exam", FileName="spring_kvqm.xml")
try:
    ask("LoadKavlorObject.asp", ObjName="Exam", FileName="spring_kvqm.xml")
except HTTPError as error:
    print("Deleted again" if error.code == 404 else error)
