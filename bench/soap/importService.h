//gsoap ns1 service name: import
//gsoap ns1 service namespace: urn:ImportExportService
//gsoap ns1 schema namespace: urn:ImportExportService
//gsoap ns1 schema form: unqualified
//gsoap ns1 service style: rpc

struct Lines {
  int __sizeLINE;
  char** LINE;
};

struct Information {
  char* IMPORTEXPORT;
  char* DATATYPE;
  char* SCHEDULE;
  char* DATAORIGIN;
  char* DELIMITER;
  char* USERNAME;
  char* ALLOWWARNINGS;
  char* ALLOWTRUNCATION;
};

struct Wrapper {
  struct Lines LINES;
  struct Information REQUESTINFORMATION;
};

struct Parameter {
  struct Wrapper IMPORTEXPORTWRAPPER;
};

int ns1__importCustomersInstant(struct Parameter PARAM_ELEMENT, char** result);
