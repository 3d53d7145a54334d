#include "Values/ServiceAddresses.h"

namespace velkin {

constinit const ServiceAddresses serviceAddresses = {
    .chatgpt = "https://chat.openai.com/chat",
    .bard = "https://bard.google.com/",
    .bitbucket = "https://bitbucket.org/",
    .gitlab = "https://gitlab.com/",
    .hemingway = "https://hemingwayapp.com/",
    .jira = "https://www.atlassian.com/software/jira",
    .chatCompletions = "https://api.openai.com/v1/chat/completions",
    .keyPage = "https://platform.openai.com/account/api-keys",
};

}  // namespace velkin
