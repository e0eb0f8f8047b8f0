#include <curl/curl.h>
#include <iostream>
#include <string>

// The answer's status; its text goes to `text`.
long ask(const std::string& url, const std::string& document, std::string& text) {
    text.clear();
    long status = 0;
    CURL* curl = curl_easy_init();
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(document.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, document.data());
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &text);
    curl_easy_setopt(
        curl, CURLOPT_WRITEFUNCTION, +[](char* data, size_t, size_t size, std::string* to) {
            to->append(data, size);
            return size;
        });
    if (curl_easy_perform(curl) == CURLE_OK)
        curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    curl_easy_cleanup(curl);
    return status;
}

int main(int count, char** arguments) {
    const std::string server = count > 1 ? arguments[1] : "http://127.0.0.1:8080/";
    const std::string copy = "KavlorObject.asp?ObjName=Exam&FileName=spring_kvqm.xml";
    std::string exam, text;
    ask(server + "LoadKavlorObject.asp?ObjName=Exam&FileName=sheets_kvqm.xml", "", exam);
    if (const size_t place = exam.find("first term"); place != std::string::npos)
        exam.replace(place, 10, "spring");
    if (ask(server + "Save" + copy, exam, text) != 200 || !text.empty()) {
        std::cerr << text << '\n';
        return 1;
    }
    ask(server + "GetTitleFileNames.asp?ObjName=Exam&ExamType=1", "", text);
    for (const char character : text)
        std::cout << (character == ';' ? '\n' : character);
    ask(server + "Delete" + copy, "", text);
    if (ask(server + "Load" + copy, "", text) == 404)
        std::cout << "Deleted again\n";
}
