#include "Values/ServiceAddresses.h"

namespace velkin {

// One host for each service, as in the world outside: cookies and storage must not mix.
constinit const ServiceAddresses serviceAddresses = {
    .chatgpt = "http://127.83.0.1:8471/chat",
    .bard = "http://127.83.0.2:8471/",
    .bitbucket = "http://127.83.0.3:8471/",
    .gitlab = "http://127.83.0.4:8471/",
    .hemingway = "http://127.83.0.5:8471/",
    .jira = "http://127.83.0.6:8471/software/jira",
    .chatCompletions = "http://127.83.0.7:8471/v1/chat/completions",
    .keyPage = "http://127.83.0.7:8471/account/api-keys",
};

}  // namespace velkin
