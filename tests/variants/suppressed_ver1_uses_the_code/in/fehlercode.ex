Ver1
